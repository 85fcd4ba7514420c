// How far the genomes of a collection are from each other.

#ifndef PALVOR_KIT_ANSWERS_DISTANCE_H_
#define PALVOR_KIT_ANSWERS_DISTANCE_H_

#include <cstdint>
#include <vector>

#include "kit/answers/merged_options.h"

namespace kit {

enum class DistanceFormat { kTsv, kPhylip, kNewick };
enum class DistanceMeasure { kMash, kJaccard, kAcs };

struct DistanceOptions {
  MergedOptions merged;
  std::vector<uint32_t> k = {21};
  bool acs = false;  // average common substrings too, in tables
  DistanceFormat format = DistanceFormat::kTsv;
  DistanceMeasure measure = DistanceMeasure::kMash;  // of matrix and tree
  bool json = false;                                 // instead of a table
  int jobs = 1;                                      // threads
};

// Prints, of each pair of genomes, what they share, or a matrix of distances,
// or a tree. Throws std::exception, which names the file, if the order is not
// there, unfinished or wrong; and if a tree or matrix would need one k.
void distance(DistanceOptions options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_DISTANCE_H_
