#!/bin/bash
set -euo pipefail
cmake -S . -B build -G Ninja ${CMAKE_ARGS:-} \
  -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$PREFIX" \
  -DCMAKE_PREFIX_PATH="$PREFIX" \
  -DPALVOR_TESTS=OFF -DPALVOR_BENCHMARKS=OFF
cmake --build build -j "${CPU_COUNT:-1}"
cmake --install build
