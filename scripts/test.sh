#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds everything and runs every test.
#
# Usage: scripts/test.sh              all stages, as CI runs them
#        scripts/test.sh STAGE...     some of them: build headers docs licences sanitizers threads guard tests
#                                     and two that only take part when they are named: threads_all release_checks
set -euo pipefail
cd "$(dirname "$0")/.."

export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_ctime,include_file_mtime
# One more than processors: some tests wait for a timer most of their time.
export CTEST_PARALLEL_LEVEL="${CTEST_PARALLEL_LEVEL:-$(($(nproc) + 1))}"

stage_install() {
    scripts/install-dependencies.sh test
}

# The development build, with warnings as errors.
stage_build() {
    cmake --preset dev -DKEL_WARNINGS_AS_ERRORS=ON -DKEL_BUILD_EXAMPLES=ON
    cmake --build --preset dev
}

# Every public header compiled on its own.
stage_headers() {
    cmake --build --preset dev --target all_verify_interface_header_sets
}

# The reference and the guides: every public symbol has its comment, every snippet and link its target.
stage_docs() {
    scripts/build-docs.sh build/dev/docs
}

# Every file says whose it is and under which licence.
stage_licences() {
    reuse lint --quiet || reuse lint
}

# The whole suite again under AddressSanitizer and UndefinedBehaviorSanitizer.
stage_sanitizers() {
    cmake --preset asan -DKEL_WARNINGS_AS_ERRORS=ON
    cmake --build --preset asan
    ctest --preset asan
}

# What runs in several threads, under ThreadSanitizer; threads_all for the whole suite but for the viewer, which hands
# work to its threads through Qt's event queue, where the sanitizer cannot follow.
stage_threads() {
    local programs=(tst_KelSingleton tst_KelUniqueFilenameMaker tst_KelConcurrent tst_KelGPXMarkerShape
        tst_KelEnumWrapper tst_KelGPXTrackSegment tst_KelGPXTrackFileRegistry tst_RenderingInThreads tst_SharedValues)
    cmake --preset tsan -DKEL_WARNINGS_AS_ERRORS=ON
    cmake --build --preset tsan --target "${programs[@]}" seeded-race
    ctest --preset tsan -R "^($(IFS='|'; echo "${programs[*]}")|a_seeded_race_is_reported.*)\$"
}

stage_threads_all() {
    cmake --preset tsan -DKEL_WARNINGS_AS_ERRORS=ON
    cmake --build --preset tsan
    ctest --preset tsan -E '^tst_KelViewer'
}

# Instructions of four small pieces of work in an optimised build, against stored figures.
stage_guard() {
    benchmarks/guard.sh
}

# Before a release: the modules for QML and Qt Designer with their tests, the binary interface, the packages.
stage_release_checks() {
    scripts/install-dependencies.sh release
    cmake --preset release -B build/plugins -DKEL_BUILD_QML=ON -DKEL_BUILD_DESIGNER_PLUGINS=ON -DKEL_WARNINGS_AS_ERRORS=ON
    cmake --build build/plugins --target tst_KelQmlModule tst_KelDesignerWidgets
    ctest --test-dir build/plugins --output-on-failure --no-tests=error -R '^(tst_KelQmlModule|tst_KelDesignerWidgets|packaging_files_agree)$'
    scripts/check-abi.sh
    scripts/make-packages.sh -DKEL_BUILD_QML=ON -DKEL_BUILD_DESIGNER_PLUGINS=ON
}

# Last, so that the runner's summary ends the output.
stage_tests() {
    ctest --preset dev
}

stage_install
if [ $# -eq 0 ]; then
    set -- build headers docs licences sanitizers threads guard tests
fi
for stage in "$@"; do
    echo "=== $stage ($(date +%T)) ==="
    "stage_$stage"
done
