#!/bin/bash
# Runs merges side by side under the thread sanitizer. Installs what that needs
# first, if something is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies
echo "== Testing threads under the thread sanitizer"
build=build/tsan
mkdir -p $build
printf '%s\n' src/palvor/*.cpp src/palvor/*/*.cpp tests/unit/threads_test.cpp \
  tests/support/{data_folder,engine,inputs,plain_arrays,program,temporary_folder}.cpp |
  xargs -n 1 -P "$(nproc)" sh -c 'g++ -std=c++20 -O1 -g -fsanitize=thread \
    -Isrc -Itests -I. -DHWY_COMPILE_ONLY_EMU128 \
    -DPALVOR_PROGRAM=\"\" -DPALVOR_KIT_PROGRAM=\"\" \
    -c "$1" -o '$build'/$(echo "$1" | tr / _).o' compile
g++ -fsanitize=thread $build/*.o -lgtest -lgtest_main -lgmock -pthread \
  -o $build/threads_test
$build/threads_test --gtest_brief=1
