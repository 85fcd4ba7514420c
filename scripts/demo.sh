#!/bin/bash
# From three genomes to one suffix array, and to suffix trees: builds palvor,
# gets three E. coli genomes, prepares them, merges them, shows what came out.
# Everything lands in demo-data/, which may be removed at any time.
#
# The genomes come out of two Debian packages that are unpacked but not
# installed. Where they can't be had, the small genomes in examples/ serve.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

data=demo-data
bin=build/release

# Prints a command and runs it.
show() {
  echo "\$ $*"
  "$@"
}

# Puts the three E. coli genomes into $data/genomes. Fails if they can't be
# had; what is there is complete.
get_genomes() {
  local docs=$data/packages/usr/share/doc
  local found=$data/genomes
  if [ -e "$found/MG1655.fa.gz" ]; then return 0; fi
  echo "== Getting three E. coli genomes from Debian's bowtie-examples and" \
    "ragout-examples"
  unpack_package "$data/packages" bowtie-examples && unpack_package "$data/packages" ragout-examples || return 1
  mkdir -p "$found"
  mv "$docs/bowtie/examples/genomes/NC_008253.fna.gz" "$found/536.fa.gz" &&
    mv "$docs/ragout/examples/E.Coli/references/DH1.fasta.gz" \
      "$found/DH1.fa.gz" &&
    mv "$docs/ragout/examples/E.Coli/references/MG1655-K12.fasta.gz" \
      "$found/MG1655.fa.gz" && rm -rf "$data/packages"
}

install_dependencies
build_preset release palvor palvor-kit
mkdir -p "$data"
if get_genomes; then
  prefix=ecoli
  genomes=("$data"/genomes/{536,DH1,MG1655}.fa.gz)
else
  echo "== The packages can't be had: the small genomes in examples/ serve"
  prefix=small
  genomes=(examples/genome_{0,1,2}.fa)
fi

echo "== Preparing: a packed string and a suffix array for each genome"
show $bin/kit/palvor-kit prepare -o "$data/" -p $prefix --force "${genomes[@]}"

echo
echo "== Merging the suffix arrays into one, with its LCP array"
show $bin/src/palvor "$data/" $prefix -p $prefix-array -a -l 2>&1 |
  tee "$data/merge.log"
echo
ls -l "$data/$prefix-array.ST" | awk 'NF > 2 {print $5 " bytes  " $NF}'
python3 scripts/show_array.py "$data/$prefix.ST/$prefix" \
  "$data/$prefix-array.ST/$prefix-array"

echo
echo "== Merging them into suffix trees, the default"
show $bin/src/palvor "$data/" $prefix -p $prefix-trees -q
echo
python3 scripts/show_trees.py "$data/$prefix-trees.ST/$prefix-trees"

echo
echo "== A report of the merged array, for a browser"
show $bin/kit/palvor-kit report "$data/" $prefix -p $prefix-array \
  --log "$data/merge.log"

echo
echo "Done."
