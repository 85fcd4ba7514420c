#!/bin/bash
# Builds palvor and runs all its tests. Installs what that needs first, if
# something is missing. Works from any folder; needs no network once the
# packages are there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies strace=strace
build_preset release
echo "== Testing"
ctest --preset release -j "$(nproc)" "$@"
echo "Passed."
