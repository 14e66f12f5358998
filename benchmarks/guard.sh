#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Guards against code that became slower, without a clock: counts the instructions of four small pieces of work and
# compares them with the figures in guard.txt. More than 10 % above fails; more than 10 % below asks for new figures.
#
# Usage: benchmarks/guard.sh            builds and compares
#        benchmarks/guard.sh --store    builds and stores the counts as the new figures
set -euo pipefail
cd "$(dirname "$0")/.."

margin=10
figures=benchmarks/guard.txt
build=build/guard
store=false
[ "${1:-}" = --store ] && store=true

# Optimised, and nothing but the libraries and one program. Eight sources as one: it takes a third of the time.
cmake --preset release -B "$build" -DKEL_BUILD_TESTS=OFF -DKEL_BUILD_APPS=OFF -DKEL_BUILD_GUARD=ON \
    -DCMAKE_UNITY_BUILD=ON -DKEL_USE_PCH=OFF >/dev/null
cmake --build "$build" --target guard_work

# The same code on every machine: one processor, hence no splitting by their number, and no instructions that only
# some processors have.
export QT_QPA_PLATFORM=offscreen
export QT_NO_CPU_FEATURE="avx avx2 avx512f avx512bw avx512vl avx512dq avx512cd bmi bmi2 f16c fma"
export GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX,-AVX512F,-AVX512VL,-AVX512BW,-FMA,-FMA4,-BMI1,-BMI2,-ERMS,-FSRM
processor="$(taskset -cp $$ | sed 's/.*: //; s/[-,].*//')"

count() {
    local log
    log="$(taskset -c "$processor" valgrind --tool=callgrind --instr-atstart=no --collect-atstart=no \
        --callgrind-out-file=/dev/null "$build/benchmarks/guard_work" "$1" 2>&1)" || { echo "$log" >&2; return 1; }
    sed -n 's/.*Collected : \([0-9]*\).*/\1/p' <<<"$log"
}

cases=(gpx kml compact stroke)
if $store; then
    {
        # REUSE-IgnoreStart
        printf '# SPDX-FileCopyrightText: The libKelGeoLocation authors\n# SPDX-License-Identifier: MIT\n'
        # REUSE-IgnoreEnd
        printf '# Instructions of each piece of work of guard_work; written by guard.sh --store.\n'
        for name in "${cases[@]}"; do
            echo "$name $(count "$name")"
        done
    } >"$figures.new"
    mv "$figures.new" "$figures"
    cat "$figures"
    exit
fi

failed=0
printf '%-10s %14s %14s %8s\n' work stored now change
for name in "${cases[@]}"; do
    stored="$(sed -n "s/^$name //p" "$figures")"
    now="$(count "$name")"
    change=$(((now - stored) * 1000 / stored))
    verdict=""
    if [ "$change" -gt $((margin * 10)) ]; then
        verdict="SLOWER"
        failed=1
    elif [ "$change" -lt $((-margin * 10)) ]; then
        verdict="faster: please store the new figures with benchmarks/guard.sh --store"
    fi
    printf '%-10s %14d %14d %+7d‰ %s\n' "$name" "$stored" "$now" "$change" "$verdict"
done
exit $failed
