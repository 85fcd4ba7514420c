#!/bin/bash
# Looks for files that palvor or palvor-kit cannot bear, with AFL++ and the
# address and undefined sanitizers. See --help and docs/fuzzing.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

all_targets=(array tree check view prepare answer)
build=build/fuzz
findings=$build/findings
fuzzer=$build/tests/fuzz/palvor_fuzz

usage() {
  cat <<USAGE
usage: scripts/fuzz.sh [-j JOBS] SECONDS [TARGET...]

Builds tests/fuzz/palvor_fuzz for AFL++ in $build and fuzzes each target in
turn, beginning from tests/fuzz/corpus, for SECONDS seconds in all (building
and starting come on top). Targets: ${all_targets[*]}; without any, all.

  -j JOBS   targets that run at once, 1 by default

Exit status 1 if anything was found; what was found is in $findings.
USAGE
}

fail() {
  echo "fuzz.sh: $*" >&2
  exit 2
}

is_number() { [[ $1 =~ ^[1-9][0-9]{0,8}$ ]]; }

# --- The command line

jobs=1
targets=()
seconds=
while [ $# -gt 0 ]; do
  case $1 in
    -h | --help)
      usage
      exit 0
      ;;
    -j)
      is_number "${2-}" || fail "-j wants a number above 0"
      jobs=$2
      shift
      ;;
    -*) fail "unknown option $1 (see --help)" ;;
    *)
      if [ -z "$seconds" ]; then
        is_number "$1" || fail "SECONDS is '$1', no number above 0"
        seconds=$1
      elif [[ " ${all_targets[*]} " == *" $1 "* ]]; then
        targets+=("$1")
      else
        fail "no target '$1'; there are: ${all_targets[*]}"
      fi
      ;;
  esac
  shift
done
if [ -z "$seconds" ]; then
  usage >&2
  exit 2
fi
if [ ${#targets[@]} = 0 ]; then targets=("${all_targets[@]}"); fi

# --- Building

source scripts/dependencies.sh
install_dependencies afl-fuzz=afl++ afl-clang-fast++=afl++

work=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo /tmp)" \
  palvor-fuzz.XXXXXX)
clean_up() {
  local running
  running=$(jobs -p)
  if [ -n "$running" ]; then
    # shellcheck disable=SC2086  # a word for each process
    kill $running 2>/dev/null || true
    wait
  fi
  rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT TERM

echo "== Building the fuzzer in $build"
generator=()
if [ ! -e $build/CMakeCache.txt ]; then generator=(-G Ninja); fi
if ! {
  cmake -S . -B $build "${generator[@]}" \
    -DCMAKE_CXX_COMPILER=afl-clang-fast++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DPALVOR_SANITIZE=ON -DPALVOR_BENCHMARKS=OFF &&
    cmake --build $build -j "$(nproc)" --target palvor_fuzz
} >"$work/build.log" 2>&1; then
  cat "$work/build.log" >&2
  fail "the build failed"
fi

# --- Fuzzing

# The fuzzer passes over cases of the corpus that fail already.
echo "== Going through the corpus"
for target in "${targets[@]}"; do
  if ! "$fuzzer" "$target" "tests/fuzz/corpus/$target" >"$work/replay"; then
    echo "$fuzzer $target:"
    cat "$work/replay"
    echo "The corpus has to pass before it can be fuzzed from." >&2
    exit 1
  fi
done

# A machine's own settings for crashes and processor speeds are let be, and
# there is nobody to look at a screen. Cases live in memory, in $work.
export AFL_I_DONT_CARE_ABOUT_MISSING_CRASHES=1 AFL_SKIP_CPUFREQ=1
export AFL_NO_AFFINITY=1 AFL_NO_UI=1 AFL_NO_COLOR=1 AFL_FAST_CAL=1
export AFL_HANG_TMOUT=10000 TMPDIR=$work
# The harness has settings of its own (tests/fuzz/watch.cpp), but the fuzzer
# gives way only to settings that stand here.
asan=abort_on_error=1:symbolize=0:detect_leaks=0:max_allocation_size_mb=1024
asan+=:allocator_may_return_null=0:malloc_context_size=0
ubsan=abort_on_error=1:halt_on_error=1:symbolize=0

# Milliseconds for one case in the fuzzer. A machine that is busy with other
# things is slow now and then: what takes longer is run again afterwards.
patience=3000

fuzz() {
  local target=$1 run=$build/run/$1
  rm -rf "$run"
  mkdir -p "$run"
  ASAN_OPTIONS=$asan UBSAN_OPTIONS=$ubsan \
    afl-fuzz -i "tests/fuzz/corpus/$target" -o "$run" -t $patience -m none \
    -G 16384 -V "$share" -- "$fuzzer" "$target" >"$run/log" 2>&1 </dev/null
}

share=$((seconds * jobs / ${#targets[@]}))
if [ "$jobs" -gt ${#targets[@]} ]; then share=$seconds; fi
if [ "$share" = 0 ]; then share=1; fi
echo "== Fuzzing ${targets[*]}: $share seconds each, $jobs at once"
rm -rf "$findings"
running=0
for target in "${targets[@]}"; do
  if [ "$running" -ge "$jobs" ]; then
    wait -n || true
    running=$((running - 1))
  fi
  fuzz "$target" &
  running=$((running + 1))
done
wait

# --- What came of it

# What the fuzzer's statistics say of a target: value of a key, 0 if none.
statistic() {
  local value
  value=$(sed -n "s/^$2 *: *//p" "$build/run/$1/default/fuzzer_stats")
  echo "${value:-0}"
}

# Keeps a target's crashes, and the hangs that are there again without the
# fuzzer; prints how many.
keep() {
  local target=$1 kind=$2 case count=0 to
  for case in "$build/run/$target/default/$kind"/id*; do
    if [ ! -e "$case" ]; then continue; fi
    if [ "$kind" = hangs ] && "$fuzzer" "$target" "$case" >/dev/null; then
      continue
    fi
    count=$((count + 1))
    mkdir -p "$findings/$target"
    to=$(basename "$case")
    cp "$case" "$findings/$target/${kind%s}-${to:3:6}"
  done
  echo "$count"
}

bad=0
printf '%-8s %12s %12s %8s %8s %8s\n' target executions 'per second' \
  queue crashes hangs
for target in "${targets[@]}"; do
  if [ ! -e "$build/run/$target/default/fuzzer_stats" ]; then
    tail -n 30 "$build/run/$target/log" >&2
    fail "AFL++ did not start on $target"
  fi
  crashes=$(keep "$target" crashes)
  hangs=$(keep "$target" hangs)
  printf '%-8s %12s %12s %8s %8s %8s\n' "$target" \
    "$(statistic "$target" execs_done)" \
    "$(statistic "$target" execs_per_sec)" \
    "$(statistic "$target" corpus_count)" "$crashes" "$hangs"
  bad=$((bad + crashes + hangs))
done
if [ "$bad" = 0 ]; then
  echo "Nothing found."
  exit 0
fi
echo "Found $bad cases, in $findings. To see what one does:"
for target in "${targets[@]}"; do
  if [ -d "$findings/$target" ]; then
    echo "  $fuzzer -v $target $findings/$target/*"
  fi
done
exit 1
