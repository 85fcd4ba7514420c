#!/bin/bash
# The modes of a merge against each other, on the same data: per suffix,
# nanoseconds and bytes of peak memory, and the ratio of user time to array
# mode's. Medians of runs in turn.
#
# usage: bench/modes.sh [-r RUNS] INPUTDIR PREFIX
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

if [ $# -ne 2 ]; then
  echo "usage: bench/modes.sh [-r RUNS] INPUTDIR PREFIX" >&2
  exit 2
fi
build_preset release
run() {
  local name=$1
  shift
  measure "$name" build/release/src/palvor "$dir" "$prefix" -o "$work/" -p o "$@"
}
dir=$1
prefix=$2
suffixes=$(awk '{n += $6} END {print n}' FS='\t' \
  "$dir$prefix.ST/$prefix.inputs.tsv")
for _ in $(seq "$count"); do
  run array -a -l
  run trees
  run trees-R -R
  run trees-C -C
  run heap-array -a -H
  run heap-trees -H
done
machine
echo "$dir$prefix: $suffixes suffixes, $count runs of each in turn"
table array trees trees-R trees-C heap-array heap-trees
