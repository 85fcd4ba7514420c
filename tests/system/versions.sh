#!/bin/bash
# The version is the same everywhere it stands, and Debian's name of the library
# is that of its SONAME.
# usage: versions.sh SOURCE_FOLDER VERSION KIT_PROGRAM LIBRARY
set -euo pipefail
source=$1 version=$2 kit=$3 library=$4
expect() {
  [ "$2" = "$3" ] || { echo "$1: $2, expected $3"; exit 1; }
}
expect palvor-kit "$("$kit" --version)" "palvor-kit $version"
expect CITATION.cff "$(sed -n 's/^version: //p' "$source/CITATION.cff")" "$version"
expect debian/changelog \
  "$(sed -n '1s/palvor (\(.*\)-[^-]*) .*/\1/p' "$source/debian/changelog")" \
  "$version"
expect bioconda "$(sed -n 's/.*set version = "\(.*\)".*/\1/p' \
  "$source/packaging/bioconda/palvor/meta.yaml")" "$version"
soname=$(objdump -p "$library" | sed -n 's/ *SONAME *//p')
name=libpalvor${soname##*.so.}
[ -f "$source/debian/$name.install" ]
grep -qx "Package: $name" "$source/debian/control"
