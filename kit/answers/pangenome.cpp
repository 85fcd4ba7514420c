#include "kit/answers/pangenome.h"

#include <memory>
#include <span>
#include <vector>

#include "kit/answers/array_cuts.h"
#include "kit/answers/array_pieces.h"
#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/range_kmers.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

// What is counted.
struct Kmers {
  const MergedInputs& inputs;
  const Genomes& genomes;
  KmerLengths k;
  std::shared_ptr<const Palindromes> palindromes;
};

KmerCounts count(const MergedArray& array, const Kmers& kmers) {
  KmerSpectrum spectrum(kmers.inputs, kmers.genomes, kmers.k,
                        kmers.palindromes);
  array.pass("counting k-mers", takenBy(spectrum));
  return spectrum.finish().result();
}

KmerCounts countByThreads(const MergedArray& array, const Kmers& kmers,
                          int jobs) {
  const ArrayCuts cuts = evenCuts(array, jobs);
  const size_t ranges = cuts.size() - 1;
  RangeCounts counts(kmers.inputs, kmers.genomes, kmers.k, kmers.palindromes,
                     ranges);
  std::vector<LcpEntry> entries;
  for (size_t range = 0; range < ranges; range++) {
    entries.push_back(array.entry(cuts[range]));
  }
  passPieces(array, "counting k-mers", cuts, jobs,
             [&](size_t range, const PassPiece& pass) {
               RangeKmers own = counts.begin();
               pass([&](std::span<const Suffix> suffixes,
                        std::span<const LcpEntry> theirs) {
                 own.take(suffixes, theirs);
               });
               counts.add(range, own, entries[range]);
             });
  return counts.finish();
}

}  // namespace

void pangenome(const PangenomeOptions& options) {
  const PangenomeChoice& choice = options.choice;
  testChoice(choice);
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);
  const bool canonical = isCanonical(inputs, choice.canonical);
  const Kmers kmers = {inputs, genomes, choice.k,
                       palindromesFor(inputs, choice.k, canonical)};
  printPangenome(choice,
                 options.jobs == 1 ? count(array, kmers)
                                   : countByThreads(array, kmers, options.jobs),
                 kmerTotals(inputs, choice.k, canonical), writeOutput);
  finishOutput();
}

}  // namespace kit
