// Whether a plan is one of the suffix arrays that are there.

#ifndef PALVOR_KIT_MERGE_COLLECTION_CHECKSUM_H_
#define PALVOR_KIT_MERGE_COLLECTION_CHECKSUM_H_

#include <string>

#include "kit/merge/range_merger.h"
#include "kit/range_plan.h"

namespace kit {

// Of the lengths files, the arrays' sizes and some records of each: whoever
// prepares the folder anew changes it.
std::string checksumOfCollection(const RangeMerger& merger);

// Throws FileError if the plan is not one of what is to be merged now. Both
// throw std::exception if a file cannot be read.
void testFresh(const RangePlan& plan, const RangeMerger& merger);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_COLLECTION_CHECKSUM_H_
