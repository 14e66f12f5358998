#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Makes the reference and the guides as HTML. Any warning, an undocumented public symbol for one, is an error, and so is a
# class that no page names.
#
# Usage: scripts/build-docs.sh [DIRECTORY]     (default build/docs; the start page is DIRECTORY/html/index.html)
set -euo pipefail
output=$(realpath -m "${1:-$(dirname "$0")/../build/docs}")
cd "$(dirname "$0")/.."

command -v doxygen >/dev/null || { echo "Please install doxygen (1.9.4 or newer)." >&2; exit 1; }
mkdir -p "$output"
export KEL_DOCS_OUTPUT="$output"
KEL_VERSION=$(sed -nE 's/^ +VERSION ([0-9.]+)$/\1/p' CMakeLists.txt | head -1)
# The headers that the libraries install: "set(headers" in their lists of sources.
KEL_DOCS_HEADERS=$(for list in libs/*/CMakeLists.txt; do
    sed -nE '/^set\(headers$/,/^\)$/s,^ +([^# ]+\.h)$,'"${list%/*}"'/\1,p' "$list"
done | tr '\n' ' ')
export KEL_VERSION KEL_DOCS_HEADERS

# Every class has its place in the page of a floor.
nowhere=$(for header in $KEL_DOCS_HEADERS; do
    class=$(basename "$header" .h)
    case $class in *Global) continue ;; esac
    grep -qw "$class" docs/subsystem-*.md || echo "$header: no page docs/subsystem-*.md names it"
done)
if [ -n "$nowhere" ]; then
    echo "$nowhere" >&2
    exit 1
fi

# Warnings are collected rather than left to Doxygen's own error mode, which stops at the first one.
if ! doxygen docs/Doxyfile 2>"$output/warnings.log" || [ -s "$output/warnings.log" ]; then
    cat "$output/warnings.log" >&2
    echo "The documentation has $(wc -l <"$output/warnings.log") warnings." >&2
    exit 1
fi

# Doxygen itself says nothing of pictures and files that are not there.
cd "$output/html"
missing=$(grep -oE '(src|href)="[^"#?:]+["#?]' -- *.html | sort -u | while IFS=: read -r page target; do
    target=${target#*=\"}
    target=${target%[\"#?]}
    [ -e "$target" ] || echo "$page refers to $target, which is not there"
done)
if [ -n "$missing" ]; then
    echo "$missing" >&2
    exit 1
fi
echo "$output/html/index.html"
