#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Installs what the build needs from Debian 12, and nothing when everything is there already.
# Usage: scripts/install-dependencies.sh [build|test|release|compare]
#            test       adds what only the test suite needs
#            release    adds what the checks before a release need: packages, binary interface, QML, Qt Designer
#            compare    adds what benchmarks/compare.sh needs: the benchmark library and the programs to compare with
set -euo pipefail

packages=(
    g++ cmake ninja-build pkg-config mold
    qt6-base-dev qt6-svg-dev qt6-image-formats-plugins libzip-dev
    qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
    libgl-dev libvulkan-dev fonts-dejavu-core
)
if [ "${1:-build}" = test ]; then
    packages+=(libasan8 libubsan1 libtsan2 valgrind doxygen reuse)
fi
if [ "${1:-build}" = release ]; then
    packages+=(dpkg-dev fakeroot file gzip lintian abigail-tools xz-utils desktop-file-utils appstream
        qt6-declarative-dev qt6-declarative-dev-tools qml6-module-qtqml)
fi
if [ "${1:-build}" = compare ]; then
    packages+=(libbenchmark-dev libexpat1-dev gpsbabel gdal-bin libgdal-dev libmapnik-dev python3)
fi

missing=()
for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)" != installed ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing from Debian: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Please install these packages as root: ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
