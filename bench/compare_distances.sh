#!/bin/bash
# The distances of palvor-kit against those of two programs of Debian, andi and
# the genomediff of GenomeTools (Kr), on the same genomes: a table of all pairs,
# how well they agree on which pairs are near, and seconds of user time. Of
# palvor the merge is counted in, but not the preparation of the folder.
#
# usage: bench/compare_distances.sh [DATASET]
# Data sets: see bench/make_data.sh; staph5 if none is given.
set -euo pipefail
set -- -r 1 "$@"
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

install_dependencies andi=andi gt=genometools
build_preset release palvor palvor-kit
name=${1:-staph5}
bench/make_data.sh "$name"
stage "$name"
mkdir -p "$work/out"
mapfile -t genomes < <(cut -f 3 "$data/$name.ST/$name.inputs.tsv" | uniq)

# Unlike measure, keeps what a command prints.
timed() {
  local as=$1
  shift
  python3 bench/timed.py "$runs/$as" "$@" >"$work/$as" 2>"$runs/$as.said" || {
    cat "$runs/$as.said" >&2
    exit 1
  }
}

timed merge $bin/src/palvor "$input" "$name" -o "$work/out/" -p out -q -a -l
timed palvor $bin/kit/palvor-kit distance "$input" "$name" -o "$work/out/" \
  -p out --acs
timed andi andi --join -t 1 "${genomes[@]}"
timed kr gt genomediff -indexname "$work/index" "${genomes[@]}"
python3 bench/compare_distances.py "$work/palvor" "$work/andi" "$work/kr" \
  "${genomes[@]}"
machine
for as in merge palvor andi kr; do
  printf '%-7s %7.2f s\n' $as "$(median $as 1)"
done
