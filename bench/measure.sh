# To be sourced by the benchmarks beside it: times whole programs in turn.

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

# How often each command is run: 5 times, or as often as a leading -r says.
count=5
if [ "${1-}" = -r ]; then
  count=$2
  shift 2
fi
if ! command -v /usr/bin/time >/dev/null; then
  echo "needs /usr/bin/time (Debian package time)" >&2
  exit 1
fi

# Names of what is measured, in order, and a file of its runs for each:
# "user sys wall peak-kilobytes" a line.
runs=$(mktemp -d)
work=$(mktemp -d "${TMPDIR:-/tmp}/palvor-bench.XXXXXX")  # for the outputs
trap 'rm -rf "$runs" "$work"' EXIT

# measure NAME COMMAND...: one run.
measure() {
  local name=$1
  shift
  /usr/bin/time -f '%U %S %e %M' -o "$runs/last" "$@" >/dev/null 2>&1 || {
    echo "failed: $*" >&2
    exit 1
  }
  tail -n 1 "$runs/last" >>"$runs/$name"
}

# median NAME COLUMN
median() {
  awk -v c="$2" '{print $c}' "$runs/$1" | sort -n |
    awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'
}

# table SUFFIXES FIRST NAME...: a row for each, ratios against FIRST.
table() {
  local suffixes=$1 first=$2 name base
  shift
  base=$(median "$first" 1)
  printf '%-14s %9s %9s %9s %9s %9s\n' "" user sys wall bytes ratio
  for name in "$@"; do
    awk -v n="$suffixes" -v name="$name" -v u="$(median "$name" 1)" \
      -v s="$(median "$name" 2)" -v w="$(median "$name" 3)" \
      -v m="$(median "$name" 4)" -v b="$base" 'BEGIN {
        printf "%-14s %9.1f %9.1f %9.1f %9.1f %9.2f\n", name, u * 1e9 / n,
          s * 1e9 / n, w * 1e9 / n, m * 1024 / n, u / (b > 0 ? b : 1e-9)}'
  done
}

machine() {
  echo "machine: $(awk -F': ' '/model name/ {print $2; exit}' /proc/cpuinfo)," \
    "$(nproc) cores; $(c++ --version | head -n 1); release build"
}
