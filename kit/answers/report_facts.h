// What a report tells, as numbers.

#ifndef PALVOR_KIT_ANSWERS_REPORT_FACTS_H_
#define PALVOR_KIT_ANSWERS_REPORT_FACTS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/answers/genome_matrix.h"
#include "kit/answers/genomes.h"
#include "kit/answers/kmer_spectrum.h"
#include "kit/answers/lcp_histogram.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/run_log.h"
#include "kit/json.h"

namespace kit {

struct ReportFacts {
  std::string name;  // of the collection
  const MergedInputs& inputs;
  const Genomes& genomes;
  bool canonical;
  KmerCounts kmers;
  LcpHistogram lcps;
  uint32_t distanceK;
  // K-mers that each two genomes share; nothing: too many genomes.
  std::optional<GenomeMatrix<uint64_t>> shared;
  std::vector<RunFigure> run;
};

// What the page shows (kit/answers/report_page/report.js tells how):
//
//   name, strands (1 or 2), inputs, suffixes, canonical
//   genomes    [{name, group, records, characters, kmers}], forward strands;
//              kmers only if there are distances
//   chosen     numbers of genomes that curves have points at
//   quorums    [1, 0.95]
//   k          [{k, total, histogram, growth, cores: one for each quorum,
//              alpha or null}]
//   distances  {k, matrix, tree (Newick, genomes by number)}, or null
//   lcp        {mean, longest, bins: [{from, pairs}]}
//   run        [{name, value, unit}]
Json pageFacts(const ReportFacts& facts);

// Custom content of MultiQC: a table of the genomes.
Json multiqcFacts(const ReportFacts& facts);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_REPORT_FACTS_H_
