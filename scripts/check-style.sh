#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Looks at what differs from a commit, and at nothing else: form (clang-format, changed lines), length of lines (140),
# the two SPDX lines of new files, the floors of the library, and with --tidy also mistakes (clang-tidy, changed sources).
#
# Usage: scripts/check-style.sh [--fix] [--tidy] [COMMIT]    (default: what is not yet in main)
set -euo pipefail
cd "$(dirname "$0")/.."

fix=no
tidy=no
base=
for argument in "$@"; do
    case "$argument" in
        --fix) fix=yes ;;
        --tidy) tidy=yes ;;
        -*) sed -n '5,9s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
        *) base="$argument" ;;
    esac
done
[ -n "$base" ] || base=$(git merge-base HEAD main 2>/dev/null || git rev-parse HEAD~1)

failed=no
complain() {
    echo "$1" >&2
    failed=yes
}

mapfile -t changed < <({ git diff --name-only --diff-filter=d "$base"; git ls-files --others --exclude-standard; } | sort -u)
sources=()
for file in "${changed[@]}"; do
    case "$file" in *.cpp|*.h) sources+=("$file") ;; esac
done

# Line ranges of a file that are not in the commit, as clang-format wants them; an unknown file is new as a whole.
changed_lines() {
    if git cat-file -e "$base:$1" 2>/dev/null; then
        git diff --unified=0 "$base" -- "$1" | sed -nE 's/^@@ -[^+]*\+([0-9]+)(,([0-9]+))? @@.*/\1 \3/p' \
            | while read -r first count; do
                  [ "${count:-1}" -eq 0 ] || echo "--lines=$first:$((first + ${count:-1} - 1))"
              done
    else
        echo "--lines=1:1000000"
    fi
}

check_form() {
    local file=$1 lines
    mapfile -t lines < <(changed_lines "$file")
    [ ${#lines[@]} -gt 0 ] || return 0
    if [ "$fix" = yes ]; then
        clang-format -i "${lines[@]}" "$file"
    elif ! clang-format "${lines[@]}" "$file" | diff --label "$file" --label "$file, as clang-format has it" -U1 "$file" - >&2; then
        complain "$file: form"
    fi
}

if [ ${#sources[@]} -gt 0 ]; then
    if command -v clang-format >/dev/null; then
        for file in "${sources[@]}"; do
            check_form "$file"
        done
    else
        echo "clang-format is not installed: form was not looked at" >&2
    fi
fi

for file in "${sources[@]}"; do
    # Characters, not bytes.
    if long=$(LC_ALL=C.UTF-8 awk 'length > 140 { print FILENAME ":" FNR ": longer than 140 columns" }' "$file") && [ -n "$long" ]; then
        complain "$long"
    fi
done

for file in "${changed[@]}"; do
    if [ -f "$file" ] && ! git cat-file -e "$base:$file" 2>/dev/null && [ "${file%.license}" = "$file" ] \
        && ! head -n 8 "$file" | grep -aq SPDX-License-Identifier && [ ! -e "$file.license" ] && ! grep -qF -e "${file%/*}/*" -e "$file" .reuse/dep5; then
        complain "$file: no SPDX lines, and no $file.license beside it"
    fi
done

if ! message=$(cmake "-DLIBS=$PWD/libs" -P tests/house/check-layers.cmake 2>&1); then
    complain "$message"
fi

if [ "$tidy" = yes ] && [ ${#sources[@]} -gt 0 ]; then
    # Without the precompiled header, which is the compiler's own.
    cmake -S . -B build/tidy -DKEL_USE_PCH=OFF -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
    for file in "${sources[@]}"; do
        case "$file" in libs/*.cpp|apps/*.cpp) clang-tidy -p build/tidy --quiet "$file" 2>/dev/null || complain "$file: clang-tidy" ;; esac
    done
fi

[ "$failed" = no ]
