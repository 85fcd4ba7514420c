#!/bin/bash
# Looks the code over without running it (clang-tidy, cppcheck), and watches
# one small run of each command under valgrind. Installs what that needs first,
# if something is missing. Takes some minutes.
# usage: scripts/analyse.sh [--quick | FOLDER...], the folders for clang-tidy; all
# if none are given, and no clang-tidy if quick.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies clang-tidy=clang-tidy cppcheck=cppcheck valgrind=valgrind
build_preset release

if [ "${1-}" != --quick ]; then
  echo "== clang-tidy"
  if [ $# -eq 0 ]; then set -- src kit; fi
  git ls-files -z "${@/%//*.cpp}" |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy -p build/release --quiet \
      --extra-arg=-Wno-ignored-optimization-argument 2>/dev/null
fi

echo "== cppcheck"
cppcheck --quiet --enable=warning,performance,portability --std=c++20 \
  --language=c++ --suppress=toomanyconfigs -I . -I src -j "$(nproc)" --error-exitcode=1 src kit

echo "== valgrind"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
watched() {
  valgrind --quiet --error-exitcode=99 "$@" >"$work/said" 2>&1 || {
    cat "$work/said" >&2
    echo "failed: $*" >&2
    return 1
  }
}
kit=build/release/kit/palvor-kit palvor=build/release/src/palvor
# The sorting library that the kit is linked with reads the clock by an
# instruction that valgrind refuses where the processor does not announce it.
watched_kit() { watched "$kit" "$@"; }
if ! valgrind --quiet $kit --version >/dev/null 2>&1; then
  echo "valgrind cannot start palvor-kit here: only palvor is watched"
  watched_kit() { "$kit" "$@" >"$work/said" 2>&1 || { cat "$work/said" >&2; return 1; }; }
fi
watched_kit simulate --genomes 4 --length 2000 --divergence 0.01 --seed 1 \
  -o "$work"
watched_kit prepare -o "$work" -p x --lcp "$work"/*.fa
watched $palvor "$work/" x -a -l -M 4096
watched $palvor "$work/" x -a -H -p heap
watched_kit check "$work/" x -j 2
watched $palvor "$work/" x -Z -U -f -n 3000
watched $palvor "$work/" x -H -R -C -n 3000
watched_kit check "$work/" x
watched_kit view "$work/x.ST/x_0.stree"
watched_kit view "$work/x.ST/x_0.stpsa"
echo "Nothing found."
