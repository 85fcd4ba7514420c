#!/bin/bash
# Measures palvor against its floor, its alternative and its goals, on the data
# sets of bench/make_data.sh, which it makes if need be:
#
#   merge     palvor -a -l
#   trees     palvor, without options
#   copy      a plain copy: the inputs read, as many bytes written
#   scratch   all suffixes of all inputs sorted at once, with common prefixes
#   plain     the merge with a linked list that is walked from its head
#   prepare, prepare-lcp, bare
#             palvor-kit prepare, with --lcp, and the sort alone
#
# Prints, per suffix, nanoseconds of user, system and wall-clock time and bytes
# of peak memory; then the goals, which are ratios of user time where nothing
# else is said; and draws build/bench/compare.svg. Medians; the programs are run
# in turn, each 5 times or as often as -r says (small data sets more often),
# but none anew that has taken 12 seconds on a data set, or 6 if it is scratch
# or plain, so that all of it takes less than ten minutes.
#
# usage: bench/compare.sh [-r RUNS] [DATASET...]
# With data sets given: those, and only the goals that they decide.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/measure.sh"

plots=build/bench

# run PROGRAM DATASET: one run, with an output folder of its own.
run() {
  local program=$1 name=$2 out=$work/$1/ fasta=$data/fasta/$2
  rm -rf "$out"
  mkdir "$out"
  case $program in
    merge) set -- $bin/src/palvor "$input" "$name" -o "$out" -p out -a -l ;;
    trees) set -- $bin/src/palvor "$input" "$name" -o "$out" -p out ;;
    plain)
      set -- $bin/bench/palvor_plain "$input" "$name" -o "$out" -p out -a -l
      ;;
    copy)
      set -- $bin/bench/copy_floor "$out/out" $((20 * suffixes)) \
        "$input/$name.ST/"*.stpsa "$input/$name.ST/"*.stbin
      ;;
    scratch) set -- $bin/bench/from_scratch "$out" "$fasta"/*.fa ;;
    bare) set -- $bin/bench/bare_sort "$fasta"/*.fa ;;
    prepare) set -- $bin/kit/palvor-kit prepare -o "$out" -p x "$fasta"/*.fa ;;
    prepare-lcp)
      set -- $bin/kit/palvor-kit prepare -o "$out" -p x --lcp "$fasta"/*.fa
      ;;
  esac
  measure "$program" "$@"
}

# may_run PROGRAM: whether to run it once more on this data set.
may_run() {
  local longest=12
  case $1 in scratch | plain) longest=6 ;; esac
  [ ! -e "$runs/$1" ] || awk -v most="$turns" -v longest=$longest '
    {spent += $3} END {exit NR >= most || spent >= longest}' "$runs/$1"
}

declare -A user wall  # "DATASET PROGRAM": nanoseconds per suffix
measured=()           # data sets
excess=0              # most memory beyond what is stated, of what is allowed

# Memory beyond the packed strings, the input buffers and the output buffer, as
# a part of what is allowed: 5% of these, and 10 MB.
excess_memory() {
  awk -F '\t' -v peak="$(median merge 4)" '
    {n += $6; if ($6 > longest) longest = $6}
    END {
      input = 16 * n < 3e8 ? 16 * n : 3e8
      stated = n / 4 + input + 20 * (longest < 2^20 ? longest : 2^20)
      printf "%.3f\n", (peak * 1024 - stated) / (stated / 20 + 1e7)
    }' "$input/$1.ST/$1.inputs.tsv"
}

# measure_set DATASET PROGRAM...
measure_set() {
  local name=$1 program again=yes over
  shift
  stage "$name" || return 0
  turns=$((suffixes < 3000000 ? 3 * count : count))
  while [ -n "$again" ]; do
    again=
    for program in "$@"; do
      if may_run "$program"; then
        run "$program" "$name"
        again=yes
      fi
    done
  done
  for program in "$@"; do
    user["$name $program"]=$(per_suffix "$program" 1)
    wall["$name $program"]=$(per_suffix "$program" 3)
    printf '%-9s %-12s %9.1f %9.1f %9.1f %9.1f %5d\n' "$name" "$program" \
      "${user["$name $program"]}" "$(per_suffix "$program" 2)" \
      "${wall["$name $program"]}" "$(bytes_per_suffix "$program")" \
      "$(wc -l <"$runs/$program")"
  done
  over=$(excess_memory "$name")
  excess=$(printf '%s\n' "$excess" "$over" | sort -g | tail -n 1)
  if [ -e "$work/plain" ] && ! diff -rq "$work/merge" "$work/plain"; then
    echo "$name: the plain list gives other files" >&2
    exit 1
  fi
  for program in "$@"; do rm -rf "${work:?}/$program"; done
  measured+=("$name")
}

# goal WHAT A B at-most|at-least LIMIT: a row for the ratio of A to B; none if
# either was not measured.
goal() {
  if [ -z "$2" ] || [ -z "$3" ]; then return 0; fi
  local value
  value=$(ratio "$2" "$3")
  printf '%-58s %7.3f  %-8s %5s  %s\n' "$1" "$value" "${4/-/ }" "$5" \
    "$(awk -v v="$value" -v limit="$5" -v sense="$4" 'BEGIN {
      print (sense == "at-most" ? v <= limit : v >= limit) ? "met" : "not met"
    }')"
}

# u DATASET PROGRAM, w DATASET PROGRAM: what was measured, or nothing.
u() { echo "${user["$1 $2"]-}"; }
w() { echo "${wall["$1 $2"]-}"; }

goals() {
  local name sims
  printf '%-58s %7s  %-14s\n' "" ratio goal
  goal "merge to copy, wall: rand2" "$(w rand2 merge)" "$(w rand2 copy)" \
    at-most 1.5
  for name in ecoli3 staph5; do
    goal "merge to copy, wall: $name" "$(w $name merge)" "$(w $name copy)" \
      at-most 2.5
  done
  for name in rand2 ecoli3 staph5 pan16 strains12 pan64 phylo64 pan1024 k4096; do
    goal "scratch to merge: $name" "$(u $name scratch)" "$(u $name merge)" \
      at-least 1
  done
  goal "plain to merge: k4096" "$(u k4096 plain)" "$(u k4096 merge)" \
    at-least 25
  goal "plain to merge: pan1024" "$(u pan1024 plain)" "$(u pan1024 merge)" \
    at-least 8
  goal "k16 to k2" "$(u k16 merge)" "$(u k2 merge)" at-most 1.3
  sims=$(for name in sim1e-3 sim1e-4 sim1e-5 sim0; do u $name merge; done |
    sort -g)
  if [ "$(wc -w <<<"$sims")" = 4 ]; then
    goal "dearest to cheapest of 8 genomes at 0.1% to 0 divergence" \
      "$(tail -n 1 <<<"$sims")" "$(head -n 1 <<<"$sims")" at-most 1.5
  fi
  goal "runA to rand2" "$(u runA merge)" "$(u rand2 merge)" at-most 10
  goal "tandem to rand2" "$(u tandem merge)" "$(u rand2 merge)" at-most 10
  for name in rand2 ecoli3 pan16; do
    goal "trees to merge: $name" "$(u $name trees)" "$(u $name merge)" \
      at-most 1.4
  done
  goal "prepare to bare sort: ecoli3" "$(u ecoli3 prepare)" \
    "$(u ecoli3 bare)" at-most 1.3
  goal "prepare --lcp to bare sort: ecoli3" "$(u ecoli3 prepare-lcp)" \
    "$(u ecoli3 bare)" at-most 1.9
  goal "memory beyond strings and buffers, to 5% of them and 10 MB" \
    "$excess" 1 at-most 1
}

plot() {
  local name
  mkdir -p $plots
  for name in "${measured[@]}"; do
    echo "$name $(w "$name" merge) $(w "$name" copy) $(w "$name" scratch)"
  done >$plots/compare.dat
  gnuplot <<PLOT
    set terminal svg size 1000,500 background "white"
    set output "$plots/compare.svg"
    set style data histogram
    set style fill solid 0.8
    set logscale y
    set grid y
    set xtics rotate by -45
    set ylabel "wall-clock nanoseconds per suffix"
    set key top left
    plot [][1:] "$plots/compare.dat" using 2:xtic(1) title "palvor -a -l", \
      "" using 3 title "plain copy", "" using 4 title "sorted from scratch"
PLOT
  echo "Drawn: $plots/compare.svg"
}

install_dependencies gnuplot=gnuplot-nox
build_preset release
sets=("$@")
if [ ${#sets[@]} -eq 0 ]; then read -ra sets < <(bench/make_data.sh --list); fi
bench/make_data.sh "${sets[@]}"
machine
printf '%-9s %-12s %9s %9s %9s %9s %5s\n' "" "" user sys wall bytes runs
for name in "${sets[@]}"; do
  case $name in
    ecoli3)
      measure_set "$name" merge trees copy scratch bare prepare prepare-lcp
      ;;
    rand2 | pan16 | strains12 | staph5) measure_set "$name" merge trees copy scratch ;;
    pan1024 | k4096) measure_set "$name" merge copy scratch plain ;;
    *) measure_set "$name" merge copy scratch ;;
  esac
done
echo
goals
echo
plot
