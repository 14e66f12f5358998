#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Which lines of the readers do the tests and the fuzz corpus reach? Builds both with Clang's source coverage, runs them
# and prints a table per file, then the lines that nothing reached.
#
# Usage: scripts/coverage.sh            tests and corpus
#        scripts/coverage.sh corpus     the corpus alone
#        KEL_COVERAGE_BUILD=COMMAND     builds instead of "ninja -C" (COMMAND BUILD_DIR TARGETS...)
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/coverage
sources=(
    libs/KelCore/KelFileHandler.cpp libs/KelXML/KelXMLTextReader.cpp libs/KelXML/KelXMLMarkedText.cpp
    libs/KelXML/KelXMLLoader.cpp libs/KelXML/KelXMLParser.cpp libs/KelXML/KelXMLConversion.cpp libs/KelXML/KelXMLCursor.cpp
    libs/KelXML/KelXMLDomCursor.cpp libs/KelXML/KelXMLStreamCursor.cpp libs/KelXML/KelXMLPlainCursor.cpp
    libs/KelXML/KelXMLBuilder.cpp libs/KelXML/KelXMLSerializer.cpp libs/KelXML/KelErrorHistory.cpp libs/KelXML/KelZIP.cpp
    libs/KelCore/KelPenStyle.cpp
    libs/KelGeoLocation/base/KelEnumToStringTable.h
    libs/KelGeoLocation/geo/KelGeoArc.cpp libs/KelGeoLocation/geo/KelLatitude.cpp libs/KelGeoLocation/geo/KelLongitude.cpp
    libs/KelGeoLocation/geo/KelGeoPosition.cpp libs/KelGeoLocation/geo/KelLatitudeRange.cpp
    libs/KelGeoLocation/geo/KelLongitudeRange.cpp libs/KelGeoLocation/geo/KelGeoPositionRect.cpp
    libs/KelGeoLocation/shape/KelGPXTrackShape.cpp libs/KelGeoLocation/shape/KelGPXTrackDisplayOptions.cpp
    libs/KelGeoLocation/track/KelGPXReader.cpp libs/KelGeoLocation/track/KelGPXTrackPoint.cpp
    libs/KelGeoLocation/track/KelGPXTrackSegment.cpp libs/KelGeoLocation/track/KelGPXTrack.cpp
    libs/KelGeoLocation/track/KelGPXTrackFile.cpp
    libs/KelGeoLocation/config/KelGPXTrackConfiguration.cpp libs/KelGeoLocation/config/KelGPXTrackStyle.cpp
    libs/KelGeoLocation/config/KelGPXTrackStyleList.cpp
    libs/KelGeoLocation/selection/KelGPXConfiguredTrack.cpp libs/KelGeoLocation/selection/KelGPXConfiguredTrackList.cpp
    libs/KelGeoLocation/selection/KelGPXTrackSelection.cpp
    libs/KelGeoLocation/import/KelTrackSelectionFactoryFile.cpp
    libs/KelGeoLocation/import/KelTrackSelectionFactoryGPXFile.cpp
    libs/KelGeoLocation/import/KelTrackSelectionFactoryKmlFile.cpp libs/KelGeoLocation/import/KelKMLReader.cpp
)
# Readers that came later are found by their names.
for source in libs/KelXML/KelXML*Gate*.cpp libs/KelXML/KelXMLScan*.cpp libs/KelGeoLocation/track/KelGPXTuple*.cpp; do
    [ -e "$source" ] && sources+=("$source")
done

topics=(gpx compact_points numbers coordinates kml kmz configuration texts keys renderer)
tests=(
    tst_KelFileHandler tst_KelXMLGate tst_KelXMLLoader tst_KelXMLParser tst_KelXMLTextReader tst_KelXMLConversion tst_KelXMLCursor tst_KelXMLPlainCursor
    tst_KelXMLBuilder tst_KelZIP tst_KelErrorHistory tst_KelPenStyle tst_KelEnumToStringTable tst_KelGeoArc tst_KelLatitude tst_KelLongitude
    tst_KelGeoPosition tst_KelLatitudeRange tst_KelLongitudeRange tst_KelGeoPositionRect tst_KelGPXTrackShape
    tst_KelGPXTrackDisplayOptions tst_KelGPXReader tst_KelGPXTrackPoint tst_KelGPXTrackSegment tst_KelGPXTrack
    tst_KelGPXTrackFile tst_KelGPXTrackConfiguration tst_KelGPXTrackConfigurationKml tst_KelGPXTrackStyleList
    tst_KelGPXConfiguredTrack tst_KelGPXConfiguredTrackList tst_KelGPXTrackSelection tst_KelTrackSelectionFactory
    tst_KelTrackSelectionFactoryGPXFile tst_KelTrackSelectionFactoryKmlFile
)

tool() { command -v "$1" || command -v "$1-14"; }

cmake --preset fuzz -B "$build" -DKEL_SANITIZE= -DKEL_BUILD_FUZZERS=OFF -DKEL_BUILD_TESTS=ON -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" >/dev/null
programs=("${topics[@]/#/corpus_}")
[ "${1:-}" = corpus ] || programs+=("${tests[@]}")
${KEL_COVERAGE_BUILD:-ninja -C} "$build" "${programs[@]}"

rm -rf "$build/profiles"
mkdir -p "$build/profiles"
LLVM_PROFILE_FILE="$PWD/$build/profiles/%m-%p.profraw" \
    ctest --test-dir "$build" -R "^($(IFS='|'; echo "${programs[*]}"))\$" --output-on-failure >"$build/ctest.log" || tail -30 "$build/ctest.log"
"$(tool llvm-profdata)" merge -sparse "$build"/profiles/*.profraw -o "$build/all.profdata"

objects=()
for object in "$build"/lib/libKel*.so; do
    objects+=(-object "$object")
done
"$(tool llvm-cov)" export -format=lcov "${objects[@]:1}" -instr-profile="$build/all.profdata" 2>/dev/null |
    awk -F: -v wanted="${sources[*]}" '
        BEGIN { split(wanted, files, " "); for (i in files) isWanted[files[i]] = 1 }
        /^SF:/ { file = $2; sub(/.*\/libs\//, "libs/", file) }
        /^DA:/ && file in isWanted {
            split($2, line, ",")
            ++lines[file]
            if (line[2] > 0) ++reached[file]
            else missing[file] = missing[file] " " line[1]
        }
        END {
            for (file in lines) {
                printf "%6.1f %%  %5d of %5d lines  %s\n", 100 * reached[file] / lines[file], reached[file], lines[file], file | "sort -k6"
                all += lines[file]
                allReached += reached[file]
            }
            close("sort -k6")
            printf "%6.1f %%  %5d of %5d lines\n\nLines that nothing reached:\n", 100 * allReached / all, allReached, all
            for (file in missing) print file ":" missing[file] | "sort"
        }'
