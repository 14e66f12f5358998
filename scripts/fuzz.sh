#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Looks for inputs that break a reader or a fast path: builds the fuzz targets with libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer, runs each for some time and prints what it did.
#
# Usage: scripts/fuzz.sh [SECONDS] [TOPIC...]     60 seconds and all topics unless given
#
# Found inputs are kept in fuzz/regressions/TOPIC, where the tests replay them; give them telling names. New inputs that
# reach more code are gathered in build/fuzz/corpus/TOPIC; KEL_FUZZ_MERGE=1 afterwards takes the smallest set that
# reaches as much into fuzz/corpus/TOPIC.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=60
if [[ "${1:-}" =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
all_topics=(gpx compact_points numbers coordinates kml kmz configuration texts keys renderer)
topics=("$@")
[ ${#topics[@]} -gt 0 ] || topics=("${all_topics[@]}")

install_clang() {
    command -v clang++ >/dev/null && [ -n "$(find /usr/lib -name 'libclang_rt.fuzzer-x86_64.a' -print -quit 2>/dev/null)" ] && return
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "Installing from Debian: clang-14 libclang-rt-14-dev"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends clang clang-14 libclang-rt-14-dev llvm-14
}

# The longest input that is tried: long enough for everything that a target can tell apart.
longest() {
    case $1 in
    numbers | keys | texts) echo 256 ;;
    compact_points | coordinates) echo 1024 ;;
    *) echo 4096 ;;
    esac
}

# Looks for new inputs with one target; a summary line at the end.
run_target() {
    local topic=$1 gathered=build/fuzz/corpus/$1 found=fuzz/regressions/$1 log=build/fuzz/$1.log result=0
    mkdir -p "$gathered" "$found"
    build/fuzz/bin/fuzz_"$topic" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len="$(longest "$topic")" \
        -use_value_profile=1 -dict=fuzz/dictionaries/"$topic".dict -artifact_prefix="$found/" \
        -print_final_stats=1 -close_fd_mask=1 "$gathered" fuzz/corpus/"$topic" "$found" >"$log" 2>&1 || result=$?
    awk -v topic="$topic" -v result="$result" -v seconds="$seconds" '
        /cov: / { for (i = 1; i < NF; ++i) { if ($i == "cov:") cov = $(i + 1); if ($i == "ft:") ft = $(i + 1) } }
        /stat::number_of_executed_units:/ { executed = $2 }
        /stat::average_exec_per_sec:/ { rate = $2 }
        END {
            printf "%-16s %12d executions %8d/s %8d edges %8d features %s\n", topic, executed, rate, cov, ft,
                result == 0 ? "" : "FOUND SOMETHING"
        }' "$log"
    return "$result"
}

merge_target() {
    local topic=$1 merged
    merged=$(mktemp -d)
    build/fuzz/bin/fuzz_"$topic" -merge=1 -max_len="$(longest "$topic")" "$merged" fuzz/corpus/"$topic" \
        build/fuzz/corpus/"$topic" >build/fuzz/"$topic".merge.log 2>&1
    # What is there already keeps its name.
    for input in "$merged"/*; do
        cmp -s "$input" fuzz/corpus/"$topic"/"$(basename "$input")" || cp "$input" fuzz/corpus/"$topic"/
    done
    rm -r "$merged"
}

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:max_allocation_size_mb=1024
export UBSAN_OPTIONS=print_stacktrace=1
install_clang
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${topics[@]/#/fuzz_}"
status=0
for topic in "${topics[@]}"; do
    if [ -n "${KEL_FUZZ_MERGE:-}" ]; then
        merge_target "$topic"
    elif ! run_target "$topic"; then
        status=1
        tail -40 build/fuzz/"$topic".log
    fi
done
exit $status
