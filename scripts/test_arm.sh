#!/bin/bash
# Builds palvor for ARM and runs it, emulated, against the model of the merge:
# the vector code is then that for NEON. Installs what that needs first, if
# something is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies aarch64-linux-gnu-g++=g++-aarch64-linux-gnu \
  qemu-aarch64-static=qemu-user-static
echo "== Building palvor for ARM"
build=build/arm
mkdir -p $build
# Highway's headers alone, of this machine.
mkdir -p $build/include
ln -sfn "$(echo '#include <hwy/highway.h>' | g++ -E -x c++ - |
  sed -n 's|.*"\(.*\)/highway.h".*|\1|p' | head -1)" $build/include/hwy
printf '%s\n' src/palvor/*.cpp src/palvor/*/*.cpp src/cli/*.cpp |
  xargs -n 1 -P "$(nproc)" sh -c 'aarch64-linux-gnu-g++ -std=c++20 -O2 -Isrc \
    -isystem '$build'/include \
    "-DHWY_DISABLED_TARGETS=(HWY_SVE|HWY_SVE2|HWY_SVE_256|HWY_SVE2_128)" \
    -c "$1" -o '$build'/$(echo "$1" | tr / _).o' compile
aarch64-linux-gnu-g++ -static $build/*.o -o $build/palvor.arm
cat >$build/palvor <<'RUN'
#!/bin/sh
exec qemu-aarch64-static -0 "$0" "$(dirname "$0")/palvor.arm" "$@"
RUN
chmod +x $build/palvor
echo "== Testing it against the model"
python3 tests/model/differential.py --palvor $build/palvor --cases 20 --seed 1
