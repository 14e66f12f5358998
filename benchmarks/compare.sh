#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Measures every row of the table in docs/performance.md on this machine, the peers from Debian included, and prints
# each row as it is done: goal, what was reached, yes or no, peak memory.
#
# Usage: benchmarks/compare.sh [--quick] [--only WORD] [--growth FILE.csv]
#            --quick     100,000 points instead of a million, one run each: a trial, ratios are rough
#            --only      only rows whose name holds the word
#            --growth    store the figures of the growth rows; benchmarks/growth.py draws them
# KEL_BENCH_BUILD names a build directory (default: build/release).
set -euo pipefail
cd "$(dirname "$0")/.."

build="${KEL_BENCH_BUILD:-build/release}"
scripts/install-dependencies.sh compare
cmake --preset release -B "$build" -DKEL_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build" --target benchmarks kel-render
exec python3 benchmarks/compare.py --build "$build" "$@"
