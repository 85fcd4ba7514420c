// What the genomes of a collection have in common.

#ifndef PALVOR_KIT_ANSWERS_SHARED_H_
#define PALVOR_KIT_ANSWERS_SHARED_H_

#include <cstdint>
#include <optional>

#include "kit/answers/merged_options.h"

namespace kit {

struct SharedOptions {
  MergedOptions merged;
  std::optional<uint32_t> inAtLeast;  // genomes; not given: all
  bool mums = false;        // maximal unique matches, instead of the longest
                            // common substrings
  uint32_t minLength = 20;  // of those matches
  bool json = false;
  int jobs = 1;  // threads
};

// Prints the places of the longest substrings that so many genomes have, or the
// matches that occur once in each of so many genomes and can be extended on
// neither side. Throws std::exception, which names the file, if the order is
// not there, unfinished or wrong.
void shared(const SharedOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_SHARED_H_
