# To be sourced by the scripts beside it. Finds out which of the programs and
# libraries that palvor is built from are missing, and installs their Debian
# packages. Everything there: says nothing and needs no root and no network.

# missing_packages [PROGRAM=PACKAGE...]
# Prints the package of each program or header that is missing, one a line;
# the programs that are given are looked for too.
missing_packages() {
  local program header package pair
  for pair in "$@"; do
    command -v "${pair%%=*}" >/dev/null || echo "${pair#*=}"
  done
  while read -r program package; do
    command -v "$program" >/dev/null || echo "$package"
  done <<'LIST'
g++ g++
cmake cmake
ninja ninja-build
LIST
  # python3-minimal, which may be there alone, has not all of the library.
  python3 -c 'import shlex, tempfile' 2>/dev/null ||
    echo python3
  # Debian's numpy is that of its own Python.
  /usr/bin/python3 -c 'import numpy' 2>/dev/null ||
    echo python3-numpy
  while read -r header package; do
    echo "#include <$header>" |
      g++ -std=c++20 -E -x c++ - >/dev/null 2>&1 || echo "$package"
  done <<'LIST'
gtest/gtest.h libgtest-dev
gmock/gmock.h libgmock-dev
benchmark/benchmark.h libbenchmark-dev
divsufsort.h libdivsufsort-dev
hwy/contrib/sort/vqsort.h libhwy-dev
archive.h libarchive-dev
zlib.h zlib1g-dev
xxhash.h libxxhash-dev
openssl/evp.h libssl-dev
CLI/CLI.hpp libcli11-dev
fmt/format.h libfmt-dev
nlohmann/json.hpp nlohmann-json3-dev
LIST
}

# Runs a command as root: directly, or through sudo. Fails if neither can be.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    return 1
  fi
}

# Refreshes the package lists once a run: a bare machine may have none.
update_package_lists() {
  if [ -z "${package_lists_fresh-}" ]; then
    echo "== Refreshing the package lists (apt-get update)"
    as_root apt-get update -qq || return 1
    package_lists_fresh=yes
  fi
}

# unpack_package FOLDER PACKAGE
# Unpacks a Debian package into a folder, without installing it. Fails if it
# can't be had.
unpack_package() {
  local folder=$1 package=$2
  mkdir -p "$folder"
  (
    cd "$folder"
    apt-get download -qq "$package" 2>/dev/null ||
      { update_package_lists && apt-get download -qq "$package" 2>/dev/null; }
    dpkg-deb -x "$package"_*.deb . && rm -f "$package"_*.deb
  )
}

# install_dependencies [PROGRAM=PACKAGE...]
# Installs what is missing to build palvor, and the given programs' packages.
install_dependencies() {
  local missing log
  missing=$(missing_packages "$@" | tr '\n' ' ')
  if [ -z "$missing" ]; then return 0; fi
  if ! command -v apt-get >/dev/null; then
    echo "Missing here: $missing" >&2
    echo "These are Debian package names; there is no apt-get to install" \
      "them with. Please install what they stand for, and run this again." >&2
    return 1
  fi
  echo "== Installing what is missing: $missing"
  log=$(mktemp)
  if ! update_package_lists ||
    ! as_root env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends $missing >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    echo "Could not install: $missing" >&2
    echo "Either there is no network, or neither root nor sudo is to be had." \
      "As root: apt-get install $missing" >&2
    return 1
  fi
  rm -f "$log"
  missing=$(missing_packages "$@" | tr '\n' ' ')
  if [ -n "$missing" ]; then
    echo "Still missing after the installation: $missing" >&2
    return 1
  fi
}

# build_preset PRESET [TARGET...]
# Configures and builds a preset of CMakePresets.json, all of it if no targets
# are given. Call it at the root of the project. Quiet unless something fails.
build_preset() {
  local preset=$1 log how="preset $1" generator=() targets=()
  shift
  if [ $# -gt 0 ]; then targets=(--target "$@"); fi
  if [ ! -e "build/$preset/CMakeCache.txt" ]; then
    generator=(-G Ninja)
    how+="; the first time takes some minutes"
  fi
  echo "== Building palvor and palvor-kit ($how)"
  log=$(mktemp)
  if ! { cmake --preset "$preset" "${generator[@]}" &&
    cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    echo "The build failed." >&2
    return 1
  fi
  rm -f "$log"
}
