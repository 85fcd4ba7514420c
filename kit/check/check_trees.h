// Checks of suffix tree partitions and their dividers file.

#ifndef PALVOR_KIT_CHECK_CHECK_TREES_H_
#define PALVOR_KIT_CHECK_CHECK_TREES_H_

#include <cstdint>
#include <functional>
#include <string>

#include "kit/check/checked_strings.h"
#include "kit/check/suffix_run.h"
#include "kit/fault_log.h"

namespace kit {

// Reports what is wrong with the trees <path>_<t>.stree that <path>.stdiv
// names: records out of range, met twice or not at all, edges and branchings
// that are not those of the strings, divider fields that do not agree, suffixes
// out of order from tree to tree, missing or met twice.
//   advance  told the number of suffixes done, now and then
void checkTrees(const std::string& path, const CheckedStrings& strings,
                MetSuffixes& met, FaultLog& faults,
                const std::function<void(uint64_t)>& advance);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECK_TREES_H_
