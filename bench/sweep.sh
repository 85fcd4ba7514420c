#!/bin/bash
# How the cost of a merge depends on the sizes of its buffers: the memory for
# the inputs (-m), the records written at once (-n with -a), and the nodes of a
# tree (-n). Per suffix, nanoseconds of user and of wall-clock time and bytes
# of peak memory, medians of runs in turn; and wall-clock time to that of the
# best of its kind. There should be no cliffs.
#
# usage: bench/sweep.sh [-r RUNS] [DATASET]
# Data sets: see bench/make_data.sh; k64 if none is given.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

# sweep TITLE OPTION VALUES [OPTION...]
sweep() {
  local title=$1 option=$2 values=$3 value best
  shift 3
  rm -f "$runs"/*
  for _ in $(seq "$count"); do
    for value in $values; do
      rm -rf "$work/out"
      mkdir "$work/out"
      measure "$value" $bin/src/palvor "$input" "$name" -o "$work/out/" -p out \
        "$option" "$value" "$@"
    done
  done
  best=$(for value in $values; do per_suffix "$value" 3; done |
    sort -g | head -n 1)
  printf '\n%-24s %9s %9s %9s %9s\n' "$title" user wall bytes "to best"
  for value in $values; do
    printf '%-24s %9.1f %9.1f %9.1f %9.2f\n' "$option $value" \
      "$(per_suffix "$value" 1)" "$(per_suffix "$value" 3)" \
      "$(bytes_per_suffix "$value")" \
      "$(ratio "$(per_suffix "$value" 3)" "$best")"
  done
}

install_dependencies
build_preset release
name=${1:-k64}
bench/make_data.sh "$name"
stage "$name"
machine
echo "$name: $suffixes suffixes, $count runs of each in turn"
sizes="1e6 3e6 1e7 3e7 1e8 3e8 1e9"
sweep "input buffers, array" -m "$sizes" -a -l
sweep "input buffers, trees" -m "$sizes"
sweep "records at once" -n "1e3 1e4 1e5 1e6 1e7" -a -l
sweep "nodes of a tree" -n "1e4 1e5 1e6 1e7"
