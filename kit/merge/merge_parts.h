// A merge in parts, range by range, on any machines that see the folders:
// planned once, merged in any order, put together at the end.

#ifndef PALVOR_KIT_MERGE_MERGE_PARTS_H_
#define PALVOR_KIT_MERGE_MERGE_PARTS_H_

#include <cstddef>
#include <string>

#include "kit/merge/range_merger.h"

namespace kit {

// Writes a plan of so many ranges (fewer, where many suffixes begin alike). If
// the same plan is there already, nothing happens: the parts that are done
// stay. Another plan is replaced, and its parts removed, only with `force`.
// Throws std::exception, as all of these.
void planMerge(const MergePlaces& places, int ranges, bool force);

struct PartCommand {
  MergePlaces places;
  MergeMeans means;
  size_t range = 0;
  std::string stage;  // folder that the slices are copied to first; or empty
};

// Merges one range of the plan into its part, unless that is there. What is
// left of a run that was killed is no harm, and neither is another worker at
// the same range: both write the same.
void mergePart(const PartCommand& command);

// Puts the parts together, by up to `jobs` threads, into the files that one
// merge writes, and removes them unless they are to be kept.
void joinParts(const MergePlaces& places, int jobs, bool keep);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_MERGE_PARTS_H_
