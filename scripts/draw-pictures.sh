#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Draws the pictures of the guides anew, with the library and the examples (KEL_BUILD_DOCS and KEL_BUILD_EXAMPLES).
# Look at them before you commit them. scripts/take-screenshots.sh takes those of kel-viewer.
#
# Usage: scripts/draw-pictures.sh [BUILD_DIR] [FOLDER]     (default build/dev docs/pictures)
set -euo pipefail
cd "$(dirname "$0")/.."
programs="${1:-build/dev}/bin"
folder="${2:-docs/pictures}"

settings=$(mktemp -d)
trap 'rm -rf "$settings"' EXIT
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 XDG_CONFIG_HOME="$settings" QT_LOGGING_RULES="kel.*=false;qt.*=false"

"$programs/kel_docs_pictures" "$folder"
"$programs/host-in-60-lines" examples/tracks/tour.kml --screenshot "$folder/host-in-60-lines.png"
"$programs/style-chooser" --screenshot "$folder/style-chooser.png"
"$programs/own-projection" examples/tracks/date-line-flight.gpx "$folder/own-projection.png"
