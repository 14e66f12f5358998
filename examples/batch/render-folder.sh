#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Draws every track file below a folder, several at a time, one process for each picture.
#
# Usage: render-folder.sh SOURCE TARGET [kel-render's style and map options...]
#        KEL_RENDER=path/to/kel-render and JOBS=number are taken from the environment.
#
# Pictures keep the folders of their tracks (a/b/walk.gpx becomes TARGET/a/b/walk.gpx.png). A picture that is newer than
# its track is left alone, so that a run that was broken off goes on where it stopped. What could not be drawn is listed
# in TARGET/failed.txt, and the exit code is 1 then.
set -euo pipefail
[ $# -ge 2 ] || { sed -n '5,13s/^# \{0,1\}//p' "$0" >&2; exit 2; }
source=$1
target=$2
shift 2
KEL_RENDER="${KEL_RENDER:-kel-render}"
case "$KEL_RENDER" in */*) KEL_RENDER=$(realpath "$KEL_RENDER") ;; esac
export KEL_RENDER

mkdir -p "$target"
: >"$target/failed.txt"

render_one() {
    local track=$1 target=$2 picture
    shift 2
    picture="$target/$track.png"
    [ "$picture" -nt "$track" ] && return 0
    mkdir -p "$(dirname "$picture")"
    # A failure must not stop the others; the short line is appended in one write, so that lines never mix.
    "$KEL_RENDER" --quiet "$track" -o "$picture" "$@" 2>"$picture.log" \
        || printf '%s\t%d\n' "$track" $? >>"$target/failed.txt"
    [ -s "$picture.log" ] || rm -f "$picture.log"
}
export -f render_one

target=$(realpath "$target")
cd "$source"
find . -type f \( -iname '*.gpx' -o -iname '*.kml' -o -iname '*.kmz' \) -printf '%P\0' \
    | xargs -0 -r -n 1 -P "${JOBS:-$(nproc)}" bash -c 'render_one "${@: -1}" "$0" "${@:1:$#-1}"' "$target" "$@" \
    || true
[ ! -s "$target/failed.txt" ]
