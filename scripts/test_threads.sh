#!/bin/bash
# Runs merges side by side under the thread sanitizer. Installs what that needs
# first, if something is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies
build_preset tsan palvor_unit_tests
echo "== Testing threads under the thread sanitizer"
build/tsan/tests/palvor_unit_tests --gtest_brief=1 --gtest_filter='Threads.*'
