#!/bin/bash
# Builds the Debian packages of what is committed, into build/packages/, and has
# lintian look at them. With --twice they are built a second time, in another
# folder, and must come out the same, byte for byte.
# usage: scripts/package.sh [--twice]
# DEB_BUILD_OPTIONS=nocheck leaves the tests out.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh
install_dependencies dpkg-buildpackage=dpkg-dev dh=debhelper lintian=lintian \
  strace=strace

packages=$PWD/build/packages
version=$(sed -n '1s/.*(\(.*\)-.*/\1/p' debian/changelog)

# build_packages FOLDER
build_packages() {
  local folder=$1
  rm -rf "$folder"
  mkdir -p "$folder"
  git archive --prefix="palvor-$version/" HEAD | tar -x -C "$folder"
  echo "== Building the packages in $folder"
  if ! (cd "$folder/palvor-$version" &&
    dpkg-buildpackage --no-sign --build=binary) >"$folder/log" 2>&1; then
    tail -n 50 "$folder/log" >&2
    echo "The packages could not be built; see $folder/log" >&2
    return 1
  fi
}

build_packages "$packages"
echo "== Looking at them"
lintian --allow-root --fail-on error,warning --profile debian "$packages"/*.changes

if [ "${1-}" = --twice ]; then
  # Without the tests, which must make no difference.
  DEB_BUILD_OPTIONS="nocheck ${DEB_BUILD_OPTIONS-}" \
    build_packages "$packages/again"
  echo "== Comparing"
  for package in "$packages"/*.deb; do
    cmp "$package" "$packages/again/$(basename "$package")"
  done
fi
echo "Packages:"
ls -1 "$packages"/*.deb
