// Prints what a merge will cost.

#ifndef PALVOR_KIT_MERGE_ESTIMATE_H_
#define PALVOR_KIT_MERGE_ESTIMATE_H_

#include <cstdint>

#include "kit/merge/cost_model.h"
#include "kit/merge/range_merger.h"

namespace kit {

// What the data folder holds. Throws std::exception.
Collection collectionOf(const MergePlaces& places);

// Prints a table of the steps on standard output, and what they come to on
// standard error. Throws std::runtime_error if there is nothing to merge, or a
// job does not fit a node.
void printEstimate(const Collection& collection, const Cluster& cluster,
                   const StepTimes& times, uint64_t ranges);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_ESTIMATE_H_
