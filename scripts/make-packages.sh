#!/usr/bin/env bash
# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Builds the Debian packages as Debian builds its own (compiler flags, strip) and looks at them with lintian.
# Needs dpkg-dev, fakeroot, file, gzip and lintian beside what the build needs: scripts/install-dependencies.sh release.
#
# Usage: scripts/make-packages.sh [cmake option...]      the packages lie in build/package afterwards
#        -DKEL_BUILD_QML=ON and -DKEL_BUILD_DESIGNER_PLUGINS=ON add theirs
set -euo pipefail
cd "$(dirname "$0")/.."
exceptions=packaging/debian/lintian-exceptions

# Before minutes of building rather than behind them.
missing=()
for tool in cmake:cmake cpack:cmake dpkg-buildflags:dpkg-dev dpkg-parsechangelog:dpkg-dev dpkg-shlibdeps:dpkg-dev fakeroot:fakeroot \
    file:file gzip:gzip lintian:lintian; do
    command -v "${tool%:*}" >/dev/null || missing+=("${tool%:*} (Debian package ${tool#*:})")
done
if [ ${#missing[@]} -gt 0 ]; then
    printf 'Please install %s.\n' "${missing[@]}" >&2
    exit 2
fi

export DEB_BUILD_MAINT_OPTIONS="hardening=+all"
flags() { dpkg-buildflags --get "$1"; }
cmake --preset package "$@" \
    -DCMAKE_CXX_FLAGS="$(flags CPPFLAGS) $(flags CXXFLAGS)" \
    -DCMAKE_SHARED_LINKER_FLAGS="$(flags LDFLAGS)" \
    -DCMAKE_EXE_LINKER_FLAGS="$(flags LDFLAGS)" \
    -DCMAKE_MODULE_LINKER_FLAGS="$(flags LDFLAGS)"
${KEL_BUILD_COMMAND:-cmake --build} build/package
# Packages of an earlier version would be looked at again.
rm -f build/package/*.deb
# Times of files go into the packages: the last change of the changelog makes equal sources equal packages.
SOURCE_DATE_EPOCH="$(dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)"
export SOURCE_DATE_EPOCH
(umask 022 && fakeroot cpack --preset deb)

echo
ls -l build/package/*.deb
said=$(lintian --allow-root --tag-display-limit 0 build/package/*.deb || true)
unwanted=$(grep -vE "^N:|^$" <<<"$said" | while read -r line; do
    tag=$(sed -E 's/^[A-Z]: [^:]+: ([^ ]+).*/\1/' <<<"$line")
    grep -qE "^$tag\b" "$exceptions" || echo "$line"
done)
if [ -n "$unwanted" ]; then
    printf 'lintian says, and %s does not list:\n%s\n' "$exceptions" "$unwanted" >&2
    exit 1
fi
echo "lintian: nothing but the exceptions of $exceptions"
