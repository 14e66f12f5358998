#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Compares the binary interface of the libraries with the one that is kept in packaging/abi, and prints what changed.
# Additions are compatible; anything else ends with exit code 1: hosts would have to be compiled again, so the major
# version must grow. Needs abigail-tools and xz beside what the build needs.
#
# Usage: scripts/check-abi.sh [--update] [BUILD_DIR]
#   --update     keep the present interface as the new baseline instead of comparing
#   BUILD_DIR    a tree that is built already, with debugging information; without it the libraries are built
set -euo pipefail
cd "$(dirname "$0")/.."

libraries=(KelCore KelXML KelGUIWidgets KelGeoLocation)
baseline="packaging/abi/$(uname -m)"
suppressions=packaging/abi/suppressions.ini
command -v abidw >/dev/null || { echo "Please install abigail-tools." >&2; exit 2; }

update=no
build=
for argument in "$@"; do
    case "$argument" in
        --update) update=yes ;;
        -*) sed -n '/^# Usage/,/^set/s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
        *) build="$argument" ;;
    esac
done

# As it is shipped, with the debugging information from which the interface is read.
if [ -z "$build" ]; then
    build=build/abi
    cmake --preset release -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKEL_BUILD_TESTS=OFF -DKEL_BUILD_APPS=OFF >/dev/null
    ${KEL_BUILD_COMMAND:-cmake --build} "$build"
fi
prefix="$(mktemp -d)"
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null

# What public headers show, and only that: Qt and the standard library are theirs to keep.
describe() {
    local library
    library="$(find "$prefix" -name "lib$1.so.*" -type f)"
    abidw --headers-dir "$prefix/include" --suppressions "$suppressions" --drop-private-types --drop-undefined-syms \
        --no-corpus-path --no-comp-dir-path --no-show-locs --short-locs "$library"
}

changed=0
for name in "${libraries[@]}"; do
    describe "$name" >"$prefix/$name.abi"
    if [ $update = yes ]; then
        mkdir -p "$baseline"
        xz -9e <"$prefix/$name.abi" >"$baseline/$name.abi.xz"
        continue
    fi
    xz -d <"$baseline/$name.abi.xz" >"$prefix/$name.old.abi"
    compare=(abidiff --suppressions "$suppressions" --no-default-suppression)
    if ! report=$("${compare[@]}" "$prefix/$name.old.abi" "$prefix/$name.abi"); then
        printf '%s\n%s\n' "=== $name ===" "$report"
        # What is new is no reason to fail.
        "${compare[@]}" --no-added-syms "$prefix/$name.old.abi" "$prefix/$name.abi" >/dev/null || changed=1
    fi
done

if [ $update = yes ]; then
    du -ch "$baseline"/*.xz | tail -n 1
elif [ $changed -eq 0 ]; then
    echo "The binary interface is compatible with $baseline."
else
    echo "The binary interface has changed against $baseline." >&2
    exit 1
fi
