#!/bin/bash
# The modes of a merge against each other, on the same data: per suffix,
# nanoseconds and bytes of peak memory, and the ratio of user time to array
# mode's. Medians of runs in turn.
#
# usage: bench/modes.sh [-r RUNS] [DATASET]
# Data sets: see bench/make_data.sh; ecoli3 if none is given.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

run() {
  local mode=$1
  shift
  rm -rf "$work/out"
  mkdir "$work/out"
  measure "$mode" $bin/src/palvor "$input" "$name" -o "$work/out/" -p out "$@"
}

install_dependencies
build_preset release
name=${1:-ecoli3}
bench/make_data.sh "$name"
stage "$name"
for _ in $(seq "$count"); do
  run array -a -l
  run array-Z -a -l -Z
  run array-U -a -l -U
  run trees
  run trees-Z -Z
  run trees-R -R
  run trees-C -C
  run heap-array -a -H
  run heap-trees -H
done
machine
echo "$name: $suffixes suffixes, $count runs of each in turn"
table array array-Z array-U trees trees-Z trees-R trees-C heap-array heap-trees
