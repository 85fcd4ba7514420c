// How much the genomes of a collection share, by their k-mers, for every k.

#ifndef PALVOR_KIT_ANSWERS_PANGENOME_H_
#define PALVOR_KIT_ANSWERS_PANGENOME_H_

#include "kit/answers/merged_options.h"
#include "kit/answers/pangenome_table.h"

namespace kit {

struct PangenomeOptions {
  MergedOptions merged;
  PangenomeChoice choice;
  int jobs = 1;  // threads
};

// Prints it. Throws std::exception, which names the file, if the order is not
// there, unfinished or wrong, and if k-mers shall be canonical where one strand
// is missing.
void pangenome(const PangenomeOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PANGENOME_H_
