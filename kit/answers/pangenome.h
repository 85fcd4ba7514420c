// How much the genomes of a collection share, by their k-mers, for every k.

#ifndef PALVOR_KIT_ANSWERS_PANGENOME_H_
#define PALVOR_KIT_ANSWERS_PANGENOME_H_

#include <optional>
#include <vector>

#include "kit/answers/kmer_spectrum.h"
#include "kit/answers/merged_options.h"

namespace kit {

// What to print: a line for each k, for each k and number of genomes that have
// a k-mer, or for each k and number of genomes chosen.
enum class PangenomeTable { kSummary, kHistogram, kGrowth };

struct PangenomeOptions {
  MergedOptions merged;
  KmerLengths k = {1, 100};
  std::vector<double> quorums = {1.0, 0.95};
  // Whether a k-mer and its reverse complement count as one; not given: where
  // both strands are in.
  std::optional<bool> canonical;
  PangenomeTable table = PangenomeTable::kSummary;
  bool json = false;  // all three, an object for each k
};

// Prints it. Throws std::exception, which names the file, if the order is not
// there, unfinished or wrong, and if k-mers shall be canonical where one strand
// is missing.
void pangenome(const PangenomeOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PANGENOME_H_
