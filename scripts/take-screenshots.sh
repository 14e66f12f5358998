#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Takes the pictures of kel-viewer that the documentation shows, on an X server of its own (Xvfb, ImageMagick). Look at
# them before you commit them.
# Usage: scripts/take-screenshots.sh [kel-viewer] [folder]
set -euo pipefail
cd "$(dirname "$0")/.."
viewer="$(realpath "${1:-build/release/bin/kel-viewer}")"
folder="${2:-docs/pictures}"
command -v Xvfb >/dev/null && command -v import >/dev/null || { echo "Please install xvfb and imagemagick." >&2; exit 1; }

place="$(mktemp -d)"
trap 'kill "${server:-}" 2>/dev/null || true; rm -rf "$place"' EXIT
mkfifo "$place/display"
Xvfb -displayfd 3 -screen 0 2600x1700x24 3>"$place/display" >/dev/null 2>&1 &
server=$!
DISPLAY=":$(head -n 1 "$place/display")"
export DISPLAY QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$place" XDG_CONFIG_HOME="$place/config" XDG_DATA_HOME="$place/data"

# The name of a broken file stands in a picture: it lies on a device that only the viewer sees, with the same name everywhere.
broken="$place/cut-off.gpx"
printf '<gpx version="1.1">\n<trk><trkseg>\n<trkpt lat="53.1" lon="8.2"/>\n</trk>\n</gpx>\n' >"$broken"
cat >"$place/viewer-with-device" <<END
#!/usr/bin/env bash
exec unshare --mount --map-root-user bash -c \
    'mount -t tmpfs none /media && mkdir /media/gps && cp "\$0" /media/gps/ && exec "\$@"' "$broken" "$viewer" "\$@"
END
chmod +x "$place/viewer-with-device"

# take <picture> <options and files of kel-viewer...>: the window alone, once nothing has changed in it for a while.
take() {
    local picture="$folder/viewer-$1.png"
    shift
    "$viewer" --lang en --new "$@" &
    local program=$!
    local now before="" unchanged=0 seconds=0
    # A busy machine paints late, and not all at once.
    until [ $unchanged -ge 8 ] || [ $seconds -ge 60 ]; do
        sleep 1
        seconds=$((seconds + 1))
        now=$(import -window root -trim rgb:- | md5sum)
        [ "$now" = "$before" ] && unchanged=$((unchanged + 1)) || unchanged=0
        before=$now
    done
    import -window root -trim +repage "$picture"
    kill "$program"
    wait "$program" 2>/dev/null || true
    rm -rf "$XDG_CONFIG_HOME" "$XDG_DATA_HOME"
    # REUSE-IgnoreStart
    [ -e "$picture.license" ] || printf 'SPDX-FileCopyrightText: The libKelGeoLocation authors\nSPDX-License-Identifier: MIT\n' >"$picture.license"
    # REUSE-IgnoreEnd
    echo "$picture"
}

take first-start
take tracks examples/tracks/*.gpx examples/tracks/tour.kml
take style examples/tracks/polygon-with-enclave.gpx
viewer="$place/viewer-with-device" take error /media/gps/cut-off.gpx examples/tracks/long-ride.gpx
take dark --dark examples/tracks/*.gpx examples/tracks/tour.kml
QT_SCALE_FACTOR=2 take twice-as-dense examples/tracks/*.gpx examples/tracks/tour.kml
