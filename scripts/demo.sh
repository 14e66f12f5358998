#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# From a fresh clone to a map picture: installs what is missing, builds the release, draws every example track.
# Usage: scripts/demo.sh [further options of kel-render]
#        scripts/demo.sh --viewer [further options of kel-viewer]   (opens the tracks in a window instead)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh build
cmake --preset release -DKEL_BUILD_TESTS=OFF
cmake --build --preset release

if [ "${1:-}" = --viewer ]; then
    shift
    exec build/release/bin/kel-viewer examples/tracks "$@"
fi

mkdir -p out
picture="$PWD/out/demo.png"
build/release/bin/kel-render examples/tracks -o "$picture" --size 1600x1000 \
    --line-width 5 --display-options stroke,fill "$@"
echo
echo "The picture: $picture"
