// Checks of how a data folder's inputs are divided and where they come from.

#ifndef PALVOR_KIT_CHECK_CHECK_INPUTS_H_
#define PALVOR_KIT_CHECK_CHECK_INPUTS_H_

#include <string>
#include <vector>

#include "kit/check/check_arrays.h"
#include "kit/check/checked_strings.h"
#include "kit/fault_log.h"

namespace kit {

// The suffix arrays that a data folder should hold: one for each input or, by
// `partsPath`, the .stplengths file, if it is there and not empty, for each
// partition. Reports partitions that do not cover the inputs just once. Throws
// std::runtime_error if there are partitions and not all inputs are loaded:
// palvor refuses -N then.
//   arraysBase  path of the arrays, as far as before "_<j>"
//   zeroOrigin  the arrays number their own inputs from 0
std::vector<ArrayToCheck> listArrays(const std::string& partsPath,
                                     const std::string& arraysBase,
                                     bool zeroOrigin,
                                     const CheckedStrings& strings,
                                     FaultLog& faults);

// Reports lines of the table of inputs, `path`, that are not as they should be,
// and those that disagree with the strings' lengths and with the arrays. What
// they say of the sequence files cannot be checked.
void checkInputTable(const std::string& path,
                     const std::vector<ArrayToCheck>& arrays,
                     const CheckedStrings& strings, FaultLog& faults);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECK_INPUTS_H_
