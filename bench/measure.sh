# To be sourced by the benchmarks beside it: times whole programs in turn, on
# the data sets of bench/make_data.sh.

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

data=${PALVOR_BENCH_DATA:-build/bench-data}
bin=build/release

# How often each command is run: 5 times, or as often as a leading -r says.
count=5
if [ "${1-}" = -r ]; then
  count=$2
  shift 2
fi

# Inputs and outputs are in memory, if there is such a folder.
memory=/dev/shm
if [ ! -w $memory ]; then memory=${TMPDIR:-/tmp}; fi
work=$(mktemp -d "$memory/palvor-bench.XXXXXX")
runs=$(mktemp -d)  # per name of what is measured, a file of its runs
trap 'rm -rf "$runs" "$work"' EXIT

# stage NAME: copies a data set's folder to $input, a path that ends in a
# slash, in place of the one before it, and counts its $suffixes. Fails if
# there is no such data set.
stage() {
  local name=$1
  input=$work/input/
  rm -rf "$input" "$runs"/*
  [ -e "$data/$name.ST/$name.inputs.tsv" ] || return 1
  mkdir "$input"
  cp -r "$data/$name.ST" "$input"
  suffixes=$(awk -F '\t' '{n += $6} END {print n}' \
    "$data/$name.ST/$name.inputs.tsv")
}

# measure NAME COMMAND...: one run. What it says on standard error is kept in
# $runs/NAME.said.
measure() {
  local name=$1
  shift
  python3 bench/timed.py "$runs/$name" "$@" >/dev/null 2>"$runs/$name.said" || {
    echo "failed: $*" >&2
    cat "$runs/$name.said" >&2
    exit 1
  }
}

# median NAME COLUMN: of a name's runs; 1 user, 2 system, 3 wall-clock seconds,
# 4 peak kilobytes.
median() {
  awk -v c="$2" '{print $c}' "$runs/$1" | sort -g |
    awk '{v[NR] = $1} END {print (v[int((NR + 1) / 2)] + v[int(NR / 2) + 1]) / 2}'
}

# per_suffix NAME COLUMN: the median in nanoseconds.
per_suffix() {
  median "$@" | awk -v n="$suffixes" '{printf "%.2f\n", $1 * 1e9 / n}'
}

bytes_per_suffix() {
  median "$1" 4 | awk -v n="$suffixes" '{printf "%.2f\n", $1 * 1024 / n}'
}

# ratio A B
ratio() {
  awk -v a="$1" -v b="$2" 'BEGIN {printf "%.3f\n", (b > 0 ? a / b : 0)}'
}

# table FIRST NAME...: a row for each, ratios of user time against FIRST.
table() {
  local first=$1 name
  printf '%-14s %9s %9s %9s %9s %9s\n' "" user sys wall bytes ratio
  for name in "$@"; do
    printf '%-14s %9.1f %9.1f %9.1f %9.1f %9.2f\n' "$name" \
      "$(per_suffix "$name" 1)" "$(per_suffix "$name" 2)" \
      "$(per_suffix "$name" 3)" \
      "$(bytes_per_suffix "$name")" \
      "$(ratio "$(median "$name" 1)" "$(median "$first" 1)")"
  done
}

machine() {
  echo "machine: $(awk -F': ' '/model name/ {print $2; exit}' /proc/cpuinfo)," \
    "$(nproc) cores; $(c++ --version | head -n 1)"
}
