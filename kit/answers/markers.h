// What tells genomes from others.

#ifndef PALVOR_KIT_ANSWERS_MARKERS_H_
#define PALVOR_KIT_ANSWERS_MARKERS_H_

#include <cstdint>
#include <string>

#include "kit/answers/merged_options.h"

namespace kit {

struct MarkersOptions {
  MergedOptions merged;
  std::string in;          // group or genome that has them
  std::string out;         // one that has not; empty: all other genomes
  bool unique = false;     // instead: those of each genome that no other has
  double minFraction = 1;  // of `in` that must have them
  double maxFraction = 0;  // of `out` that may have them
  uint32_t maxLength = 1000;
  bool fasta = false;    // with what is around them, instead of a table
  uint32_t flank = 100;  // characters of that on either side
  bool json = false;
  int jobs = 1;  // threads
};

// Prints the shortest substrings that tell them, with their places. Throws
// std::exception, which names the file or the group, if the order is not there,
// unfinished or wrong, and if there are no such groups.
void markers(const MarkersOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MARKERS_H_
