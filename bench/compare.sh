#!/bin/bash
# Merging against its floor and against its alternative, on the same data:
#
#   merge     palvor -a -l
#   floor     a plain copy: the inputs read, as many bytes written
#   scratch   all suffixes of all inputs sorted at once, with common prefixes
#
# Per suffix: nanoseconds of user, system and wall-clock time, bytes of peak
# memory; and the ratio of user time to that of the merge. Medians of runs in
# turn.
#
# usage: bench/compare.sh [-r RUNS] [FASTA...]
# Without files: the demo's genomes, if scripts/demo.sh has fetched them, and
# two independent random strings of 30 million characters.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

install_dependencies
build_preset release
bin=build/release

compare() {
  local title=$1 data=$work/x.ST/x suffixes
  shift
  $bin/kit/palvor-kit prepare -o "$work" -p x --force "$@" >/dev/null 2>&1
  suffixes=$(awk '{n += $6} END {print n}' FS='\t' "$data.inputs.tsv")
  rm -f "$runs"/*
  for _ in $(seq "$count"); do
    measure merge $bin/src/palvor "$work/" x -o "$work/" -p out -a -l
    measure floor $bin/bench/copy_floor "$work/floor" $((20 * suffixes)) \
      "$data"_*.stpsa "$data"_*.stbin
    measure scratch $bin/bench/from_scratch "$work/scratch" "$@"
  done
  echo
  echo "$title: $suffixes suffixes, $count runs of each in turn"
  table merge floor scratch
}

machine
if [ $# -gt 0 ]; then
  compare "$*" "$@"
  exit
fi
genomes=(demo-data/genomes/*.fa.gz)
if [ -e "${genomes[0]}" ]; then
  compare "the demo's genomes" "${genomes[@]}"
else
  echo "the demo's genomes are not here: run scripts/demo.sh first"
fi
$bin/kit/palvor-kit simulate --genomes 2 --length 30000000 --divergence 1 \
  --seed 1 -o "$work/random"
compare "2 x 30 million random characters" "$work"/random/*.fa
