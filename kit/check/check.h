// Proves a data folder and what palvor made of it, from the definitions and
// without the merge's code.

#ifndef PALVOR_KIT_CHECK_CHECK_H_
#define PALVOR_KIT_CHECK_CHECK_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "kit/fault_log.h"
#include "kit/progress.h"

namespace kit {

struct CheckOptions {
  std::string inputdir;
  std::string prefix;
  std::string odir, opfx, sdir, spfx;  // as palvor's; empty: not given
  bool zeroOrigin = false;             // as palvor's -z
  uint64_t nmerge = 0;                 // as palvor's -N; 0: all inputs
  bool goOn = false;                   // after a fault
  bool json = false;
  int jobs = 1;                      // threads
  std::optional<size_t> range = {};  // of a plan: only this range's part
  ProgressStyle progress = {};
};

// Checks the folder, its suffix arrays, and the merged array or the trees or
// both; or one range's part (kit/range_plan.h), which proves the whole
// merge if all ranges' parts are right. Prints each fault, and at last what was
// checked. Throws std::exception if there is any fault, and if the check cannot
// be done.
void check(const CheckOptions& options);

// Does so without a word but for the faults. What was checked, in words, is put
// into `found` as far as it is known. Throws FileError if the strings cannot be
// had, and CheckStopped at a fault, if the log does not go on.
void checkFolder(const CheckOptions& options, FaultLog& faults,
                 std::string& found);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECK_H_
