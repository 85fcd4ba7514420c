#!/bin/bash
# Looks at the page of palvor-kit report in a headless Chromium, and has MultiQC
# read the file beside it. Installs both if they are missing, which takes some
# hundred megabytes. Leaves build/report/page.png, to be looked at.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/dependencies.sh

install_dependencies chromium=chromium multiqc=multiqc
build_preset release palvor palvor-kit
out=build/report
rm -rf "$out"
mkdir -p "$out"
kit=build/release/kit/palvor-kit palvor=build/release/src/palvor

echo "== Looking at the page in Chromium"
python3 tests/kit/answers/report_page.py $palvor $kit $out/page.png

echo "== Having MultiQC read the table"
$kit prepare -o $out -p d --strands both examples/genome_{0,1,2}.fa
$palvor $out/ d -p m -q -a -l
printf '%s\n' 'genome_0.fa	one' 'genome_1.fa	two <b>&' 'genome_2.fa	three' \
  >$out/groups.tsv
$kit report $out/ d -p m --max-k 30 --groups $out/groups.tsv
multiqc --quiet --force --outdir $out/multiqc $out/m.ST
grep -q 'palvor: genomes' $out/multiqc/multiqc_report.html
grep -q 'two &lt;b&gt;' $out/multiqc/multiqc_report.html
if grep -q 'two <b>' $out/multiqc/multiqc_report.html; then
  echo "a name became a part of MultiQC's page" >&2
  exit 1
fi
echo "All is as it should be; $out/page.png shows the page."
