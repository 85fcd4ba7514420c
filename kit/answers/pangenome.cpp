#include "kit/answers/pangenome.h"

#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/standard_output.h"

namespace kit {

void pangenome(const PangenomeOptions& options) {
  const PangenomeChoice& choice = options.choice;
  testChoice(choice);
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);
  const bool canonical = isCanonical(inputs, choice.canonical);
  KmerSpectrum kmers(inputs, genomes, choice.k,
                     palindromesFor(inputs, choice.k, canonical));
  array.pass("counting k-mers", [&](std::span<const Suffix> suffixes,
                                    std::span<const LcpEntry> entries) {
    kmers.take(suffixes, entries);
  });
  printPangenome(choice, kmers.finish().result(),
                 kmerTotals(inputs, choice.k, canonical), writeOutput);
  finishOutput();
}

}  // namespace kit
