#!/bin/bash
# Whether reading overlaps merging when the inputs are not in the file cache:
# wall-clock seconds of reading alone, of the merge with its inputs in the
# cache, and of the merge without. Medians of runs in turn. The last is near
# the sum of the others if nothing overlaps, near the larger one if all does.
#
# usage: bench/cold.sh [-r RUNS] [DATASET]
# Data sets: see bench/make_data.sh; rand2 if none is given.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

merge() {
  rm -rf "$work/out"
  mkdir "$work/out"
  measure "$1" $bin/src/palvor "$data/" "$name" -o "$work/out/" -p out -a -l
}

# Puts the inputs out of the file cache.
forget() {
  local file
  sync "${files[@]}"
  for file in "${files[@]}"; do
    dd if="$file" iflag=nocache count=0 status=none
  done
}

install_dependencies
build_preset release
name=${1:-rand2}
bench/make_data.sh "$name"
files=("$data/$name.ST/"*.stpsa "$data/$name.ST/"*.stbin)
for _ in $(seq "$count"); do
  forget
  measure read cat "${files[@]}"
  merge warm
  forget
  merge cold
done
machine
echo "$name: $count runs of each in turn; wall-clock seconds"
for run in read warm cold; do
  printf '%-6s %7.2f\n' $run "$(median $run 3)"
done
