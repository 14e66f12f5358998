#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Makes the reference and the guides as HTML. Any warning, an undocumented public symbol for one, is an error.
#
# Usage: scripts/build-docs.sh [DIRECTORY]     (default build/docs; the start page is DIRECTORY/html/index.html)
set -euo pipefail
output=$(realpath -m "${1:-$(dirname "$0")/../build/docs}")
cd "$(dirname "$0")/.."

command -v doxygen >/dev/null || { echo "Please install doxygen (1.9.4 or newer)." >&2; exit 1; }
mkdir -p "$output"
export KEL_DOCS_OUTPUT="$output"
KEL_VERSION=$(sed -nE 's/^ +VERSION ([0-9.]+)$/\1/p' CMakeLists.txt | head -1)
export KEL_VERSION
# Warnings are collected rather than left to Doxygen's own error mode, which stops at the first one.
if ! doxygen docs/Doxyfile 2>"$output/warnings.log" || [ -s "$output/warnings.log" ]; then
    cat "$output/warnings.log" >&2
    echo "The documentation has $(wc -l <"$output/warnings.log") warnings." >&2
    exit 1
fi
echo "$output/html/index.html"
