#!/bin/bash
# What answers from a merged array cost: nanoseconds and bytes of peak memory
# for each suffix, medians of runs in turn; and patterns a second that are
# looked up in the array and in trees.
#
# usage: bench/answers.sh [-r RUNS] [DATASET]
# Data sets: see bench/make_data.sh; ecoli3 if none is given.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

kit=$bin/kit/palvor-kit
answer() {
  local name=$1 command=$2
  shift 2
  measure "$name" $kit "$command" "$input" "$name_of_data" -o "$work/out/" \
    -p out "$@"
}

# 20,000 patterns of 20 to 60 characters, most of them stretches of the data.
patterns() {
  python3 - "$data/fasta/$name_of_data" <<'PYTHON'
import glob, gzip, random, sys
texts = []
for path in sorted(glob.glob(sys.argv[1] + "/*")):
    open_ = gzip.open if path.endswith(".gz") else open
    with open_(path, "rt") as file:
        texts.append("".join(line.strip() for line in file
                             if line[0] != ">").upper())
rng = random.Random(1)
for number in range(20000):
    text = rng.choice([t for t in texts if len(t) > 100])
    at = rng.randrange(len(text) - 60)
    pattern = text[at:at + rng.randint(20, 60)]
    if number % 5 == 0:
        pattern = pattern[:-1] + rng.choice("ACGT")
    if set(pattern) <= set("ACGT"):
        print(f">p{number}\n{pattern}")
PYTHON
}

install_dependencies
build_preset release palvor palvor-kit
name_of_data=${1:-ecoli3}
bench/make_data.sh "$name_of_data"
stage "$name_of_data"
mkdir -p "$work/out" "$work/trees"
$bin/src/palvor "$input" "$name_of_data" -o "$work/out/" -p out -q -a -l
$bin/src/palvor "$input" "$name_of_data" -o "$work/trees/" -p out -q
patterns >"$work/patterns.fa"
looked_up=$(grep -c '>' "$work/patterns.fa")
rows=(pangenome pangenome1000 distance acs shared mums unique report counting
  counting-j2)
for _ in $(seq "$count"); do
  answer pangenome pangenome
  answer pangenome1000 pangenome --max-k 1000
  answer distance distance
  answer acs distance --acs
  answer shared shared
  answer mums shared --mums
  answer unique markers --unique
  answer report report --page "$work/page.html"
  measure counting $kit merge "$input" "$name_of_data" --pangenome "$work/table"
  measure counting-j2 $kit merge "$input" "$name_of_data" -j 2 \
    --pangenome "$work/table"
  answer find find -f "$work/patterns.fa" --count
  measure find-trees $kit find "$input" "$name_of_data" -o "$work/trees/" \
    -p out -f "$work/patterns.fa" --count
done
machine
echo "$name_of_data: $suffixes suffixes, $count runs of each in turn"
table pangenome "${rows[@]:1}"
for way in find find-trees; do
  median $way 1 | awk -v n="$looked_up" -v way=$way \
    '{printf "%s: %.0f patterns a second of user time\n", way, n / $1}'
done
