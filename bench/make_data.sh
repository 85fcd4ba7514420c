#!/bin/bash
# Makes the data that the benchmarks run on, always the same, in
# build/bench-data or where PALVOR_BENCH_DATA says: for each data set its
# sequences, fasta/NAME/*.fa, and its data folder, NAME.ST/, with LCP files.
# Leaves alone what is there.
#
#   rand2    2 independent random strings of 30 million characters
#   ecoli3   3 genomes of E. coli, 14 million characters in all
#   staph5   5 genomes of S. aureus, 14 million characters in all
#   pan16    16 descendants of one ancestor of 2 million characters, at 0.1%
#   sim1e-3  8 descendants of one ancestor of 500,000 characters, at 0.1%;
#            sim1e-4, sim1e-5: fewer mutations; sim0: none
#   strains12  the FASTA files (*.fna.gz) in the folder that PALVOR_STRAINS
#            names, such as complete genomes of one species; left out without it
#   pan64    64 descendants of one ancestor of a million characters, at 0.1%;
#            phylo64: descending from each other along a tree, with inversions
#            and with regions gained and lost
#   runA     a million A
#   tandem   300 characters, 3,000 times over
#   pan1024  1,024 descendants of one ancestor of 2,000 characters, at 0.1%
#   kN       16 million random characters, cut into N strings; N = 2, 16, 64,
#            256, 1024, 4096
#
# The genomes come out of two Debian packages that are unpacked but not
# installed. Where they can't be had, ecoli3 and staph5 are left out.
#
# usage: bench/make_data.sh [--list] [NAME...]
# --list only prints the names of all data sets.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

all=(rand2 ecoli3 staph5 pan16 sim1e-3 sim1e-4 sim1e-5 sim0 runA tandem pan1024
  strains12 pan64 phylo64 k2 k16 k64 k256 k1024 k4096)
data=${PALVOR_BENCH_DATA:-build/bench-data}
kit=build/release/kit/palvor-kit

# genomes DIR FILE...: takes genomes, named as below usr/share/doc, out of the
# packages.
genomes() {
  local dir=$1 file name docs=$data/packages/usr/share/doc
  shift
  if [ ! -e "$docs/bowtie" ] || [ ! -e "$docs/ragout" ]; then
    unpack_package "$data/packages" bowtie-examples && unpack_package "$data/packages" ragout-examples || return 1
  fi
  for file in "$@"; do
    name=$(basename "$file")
    zcat "$docs/$file" >"$dir/${name%%.*}.fa" || return 1
  done
}

# simulate DIR GENOMES LENGTH DIVERGENCE [OPTION...]
simulate() {
  $kit simulate --genomes "$2" --length "$3" --divergence "$4" --seed 1 \
    "${@:5}" >"$1/all.fa"
}

# sequences NAME DIR: writes a data set's sequences.
sequences() {
  local name=$1 dir=$2 ragout=ragout/examples
  case $name in
    rand2) simulate "$dir" 2 30000000 1 ;;
    ecoli3)
      genomes "$dir" bowtie/examples/genomes/NC_008253.fna.gz \
        $ragout/E.Coli/references/{DH1,MG1655-K12}.fasta.gz
      ;;
    staph5)
      genomes "$dir" $ragout/S.Aureus/references/{COL,JKD6008,N315}.fasta.gz \
        $ragout/S.Aureus/references/{RF122,USA300_FPR3757}.fasta.gz
      ;;
    strains12)
      [ -n "${PALVOR_STRAINS-}" ] || return 1
      local file
      for file in "$PALVOR_STRAINS"/*.fna.gz; do
        zcat "$file" >"$dir/$(basename "$file" .fna.gz).fa" || return 1
      done
      ;;
    pan16) simulate "$dir" 16 2000000 0.001 ;;
    pan64) simulate "$dir" 64 1000000 0.001 ;;
    phylo64) simulate "$dir" 64 1000000 0.001 --phylogeny ;;
    sim*) simulate "$dir" 8 500000 "${name#sim}" ;;
    runA)
      awk 'BEGIN {
        print ">run"
        while (n++ < 20000) print "'"$(printf 'A%.0s' {1..50})"'"
      }' >"$dir/all.fa"
      ;;
    tandem)
      $kit simulate --genomes 1 --length 300 --divergence 1 |
        awk '/^>/ {print; next} {unit = unit "\n" $0}
          END {while (n++ < 3000) print substr(unit, 2)}' >"$dir/all.fa"
      ;;
    pan1024) simulate "$dir" 1024 2000 0.001 ;;
    k*) simulate "$dir" "${name#k}" $(((1 << 24) / ${name#k})) 1 ;;
  esac
}

is_there() {
  [ -e "$data/$1.ST/$1.inputs.tsv" ]
}

# make_set NAME. Fails if its sequences can't be had.
make_set() {
  local name=$1 dir=$data/fasta/$1 per=record
  echo "== Making $name"
  rm -rf "$dir"
  mkdir -p "$dir"
  sequences "$name" "$dir" || return 1
  if [ ! -e "$dir/all.fa" ]; then per=file; fi
  $kit prepare -o "$data" -p "$name" --psa-per $per --lcp -j "$(nproc)" \
    --force "$dir"/*.fa >/dev/null 2>&1
}

if [ "${1-}" = --list ]; then
  echo "${all[@]}"
  exit
fi
if [ $# -eq 0 ]; then set -- "${all[@]}"; fi
missing=()
for name in "$@"; do
  if [[ " ${all[*]} " != *" $name "* ]]; then
    echo "no such data set: $name; there are: ${all[*]}" >&2
    exit 2
  fi
  is_there "$name" || missing+=("$name")
done
if [ ${#missing[@]} -eq 0 ]; then exit; fi
if [ ! -x $kit ]; then
  install_dependencies
  build_preset release
fi
mkdir -p "$data"
for name in "${missing[@]}"; do
  make_set "$name" || echo "$name can't be had here, and is left out" >&2
done
rm -rf "$data/packages"
