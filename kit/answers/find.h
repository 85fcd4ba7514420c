// Looks for texts in the genomes of a merged order.

#ifndef PALVOR_KIT_ANSWERS_FIND_H_
#define PALVOR_KIT_ANSWERS_FIND_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/answers/merged_options.h"

namespace kit {

// What to print: every place, or for each pattern how many there are, or for
// each pattern and genome.
enum class FindTable { kPlaces, kCount, kGenomes };

struct FindOptions {
  MergedOptions merged;
  std::vector<std::string> patterns;
  std::string file;  // FASTA or FASTQ of more of them; empty: none
  FindTable table = FindTable::kPlaces;
  uint64_t mem = 0;  // shortest maximal exact match of the file's sequences; 0:
                     // they are looked for as a whole
  bool json = false;
};

// Prints what is found, on both strands. Throws std::exception, which names the
// pattern or the file, for letters that are no bases, and if the order is not
// there, unfinished or, where that is met, wrong.
void find(const FindOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_FIND_H_
