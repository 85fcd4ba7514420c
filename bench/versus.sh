#!/bin/bash
# Two builds of palvor against each other, run in turn on the same data sets:
# nanoseconds of user and of wall-clock time for each suffix, medians, and the
# ratio of the new build to the old one. Ends with an error if their output
# files or their counters differ.
#
# usage: bench/versus.sh [-r RUNS] OLD NEW [DATASET...] [-- OPTION...]
# OLD and NEW are palvor programs; the options are palvor's, and -a -l if none
# are given. Data sets: see bench/make_data.sh; all of them if none are given.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

if [ $# -lt 2 ]; then
  echo "usage: bench/versus.sh [-r RUNS] OLD NEW [DATASET...] [-- OPTION...]" >&2
  exit 2
fi
old=$(realpath -e "$1")
new=$(realpath -e "$2")
shift 2
sets=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do
  sets+=("$1")
  shift
done
options=("${@:2}")
if [ $# -eq 0 ]; then options=(-a -l); fi
if [ ${#sets[@]} -eq 0 ]; then read -ra sets < <(bench/make_data.sh --list); fi
bench/make_data.sh "${sets[@]}"

# run NAME PROGRAM DATASET
run() {
  measure "$1" "$2" "$input" "$3" -o "$work/$1/" -p out "${options[@]}"
  grep -A 1 'Merge done' "$runs/$1.said" >"$work/$1.counters" || true
}

machine
echo "old: $old"
echo "new: $new"
echo "options: ${options[*]}"
printf '%-9s %9s %9s %7s   %9s %9s %7s  %s\n' "" "user old" new ratio \
  "wall old" new ratio runs
differ=
for name in "${sets[@]}"; do
  stage "$name" || continue
  mkdir "$work/old" "$work/new"
  # Short runs are the noisier ones.
  turns=$((suffixes < 3000000 ? 3 * count : count))
  for _ in $(seq $turns); do
    run old "$old" "$name"
    run new "$new" "$name"
  done
  same=
  diff -rq "$work/old" "$work/new" >/dev/null &&
    diff -q "$work/old.counters" "$work/new.counters" >/dev/null ||
    same="  DIFFERENT OUTPUT" differ=yes
  rm -rf "$work/old" "$work/new"
  user=("$(per_suffix old 1)" "$(per_suffix new 1)")
  wall=("$(per_suffix old 3)" "$(per_suffix new 3)")
  printf '%-9s %9.1f %9.1f %7.3f   %9.1f %9.1f %7.3f  %s%s\n' "$name" \
    "${user[@]}" "$(ratio "${user[1]}" "${user[0]}")" \
    "${wall[@]}" "$(ratio "${wall[1]}" "${wall[0]}")" $turns "$same"
done
if [ -n "$differ" ]; then
  echo "The two do not give the same output files and counters." >&2
  exit 1
fi
