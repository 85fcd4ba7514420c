#!/bin/bash
# The library as somebody else finds it: installs it, builds the example against
# it, and merges with that.
# usage: installed_library.sh BUILD_FOLDER SOURCE_FOLDER GENERATOR
# GENERATOR is CMake's, that of the build: others need not be there.
set -euo pipefail
build=$1 source=$2 generator=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/installed" >/dev/null
cmake -G "$generator" -S "$source/examples" -B "$work/example" \
  -DCMAKE_PREFIX_PATH="$work/installed" >/dev/null
cmake --build "$work/example" >/dev/null
for prefix in a b; do
  "$build/kit/palvor-kit" prepare -o "$work" -p $prefix \
    "$source"/examples/genome_*.fa >/dev/null 2>&1
done
said=$("$work/example/merge" "$work/" a "$work/" b | sort)
suffixes=$(sed -n "s/.* of \([0-9]*\) suffixes/\1/p" <<<"$said" | uniq)
# Both merges, and all of both.
[ "$(wc -l <<<"$said")" = 2 ]
[ "$suffixes" = "$(grep -hv '^>' "$source"/examples/genome_*.fa |
  tr -d '\n' | wc -c)" ]
PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name palvor.pc)") \
  pkg-config --exists palvor || ! command -v pkg-config >/dev/null
