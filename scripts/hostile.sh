#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Is the time for a hostile file in proportion to its size? Gives the files of tst_HostileFiles to the command line in two
# sizes, prints what took longest (CPU time, memory beyond the usual) and fails where the larger one took more than 1.5
# times what its size allows, three times in a row. No test judges time, so this is to be run by hand, on a machine that
# does nothing else; with the sizes that are given otherwise it takes some five minutes and 3 GB of memory.
#
# Usage: scripts/hostile.sh [SMALL LARGE [BUILD_DIR]]    10 40 build/release unless given; times the sizes of the test
#        KEL_HOSTILE_BUILD=COMMAND                       builds instead of "ninja -C" (COMMAND BUILD_DIR TARGETS...)
set -euo pipefail
cd "$(dirname "$0")/.."

small=${1:-10}
large=${2:-40}
build=${3:-build/release}

[ -e "$build/CMakeCache.txt" ] || cmake --preset release -B "$build" >/dev/null
${KEL_HOSTILE_BUILD:-ninja -C} "$build" tst_HostileFiles >/dev/null

results=$(mktemp -d)
trap 'rm -r "$results"' EXIT
status=0

# measure [FUNCTION:ROW...]: both sizes, added to what is known.
measure() {
    local factor log=$results/log
    for factor in "$small" "$large"; do
        KEL_HOSTILE_FACTOR=$factor QT_QPA_PLATFORM=offscreen "$build/tests/tst_HostileFiles" -maxwarnings 0 "$@" >"$log" 2>&1 || status=1
        grep -A2 '^FAIL' "$log" || true
        cat "$log" >>"$results/$factor"
    done
}

# A line of the test: QINFO  : tst_HostileFiles::files(levels, gpx) 0.300 MB: 0.02 s, 1.5 MB
# A row has one for its information and may have another one for its picture. The least of several times counts.
compare() {
    awk -v small="$small" -v large="$large" '
        /Start testing/ { previous = "" }
        FILENAME != name { ++file; name = FILENAME }
        /^QINFO/ && match($0, /::[^ ].*\) [0-9.]+ MB: /) {
            row = substr($0, RSTART + 2)
            sub(/\) [0-9.]+ MB: .*/, ")", row)
            figures = substr($0, index($0, row) + length(row))
            kind = row == previous ? row ", picture" : row
            previous = row
            split(figures, field, " ")
            if (!((file, kind) in seconds) || field[3] < seconds[file, kind])
                seconds[file, kind] = field[3]
            size[file, kind] = field[1]
            memory[file, kind] = field[5]
            kinds[kind]
        }
        END {
            for (kind in kinds) {
                if (!((1, kind) in seconds) || !((2, kind) in seconds))
                    continue
                ratio = seconds[1, kind] > 0 ? seconds[2, kind] / seconds[1, kind] : large / small
                # Shorter ones say nothing: starting the program alone takes 0.02 s.
                verdict = seconds[2, kind] > 0.2 && ratio > 1.5 * large / small ? " NOT IN PROPORTION" : ""
                printf "%8.2f %8.2f %6.1f %9.3f %9.1f  %s%s\n", seconds[1, kind], seconds[2, kind], ratio, size[2, kind],
                    memory[2, kind], kind, verdict
            }
        }' "$results/$small" "$results/$large" | sort -k2,2 -rn >"$results/table"
}

# What is out of proportion, as the test's arguments: "files:levels, gpx".
suspects() {
    sed -nE 's/^[-0-9. ]+  ([a-zA-Z]+)\((.*)\)(, picture)? NOT IN PROPORTION$/\1:\2/p' "$results/table" | sort -u
}

measure
compare
for _ in 1 2; do
    mapfile -t rows < <(suspects)
    [ ${#rows[@]} -gt 0 ] || break
    measure "${rows[@]}"
    compare
done

printf '%8s %8s %6s %9s %9s\n' "s, x$small" "s, x$large" ratio "file, MB" "taken, MB"
head -25 "$results/table"
if [ -n "$(suspects)" ]; then
    grep 'NOT IN PROPORTION' "$results/table"
    status=1
fi
exit $status
