// Checks of suffix arrays and their LCP files.

#ifndef PALVOR_KIT_CHECK_CHECK_ARRAYS_H_
#define PALVOR_KIT_CHECK_CHECK_ARRAYS_H_

#include <cstdint>
#include <functional>
#include <string>

#include "kit/check/checked_strings.h"
#include "kit/check/suffix_run.h"
#include "kit/fault_log.h"

namespace kit {

// A suffix array file and what it should hold.
struct ArrayToCheck {
  std::string path;     // without .stpsa; an .stlcp beside it is checked too
  uint32_t firstInput;  // the array holds every suffix of these inputs, once
  uint32_t endInput;
  uint32_t origin;  // added to the records' input numbers
};

// Reports what is wrong with an array: records that name no suffix, suffixes
// out of order, missing or met twice, prefix words and LCP entries that are
// not those of the strings. Throws FileError if a file cannot be read.
//   advance  told the number of records done, now and then
void checkArray(const ArrayToCheck& array, const CheckedStrings& strings,
                MetSuffixes& met, FaultLog& faults,
                const std::function<void(uint64_t)>& advance);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECK_ARRAYS_H_
