// Signs that files side by side come from several runs of palvor, of which one
// did not finish or did not replace what the one before had written.

#ifndef PALVOR_KIT_CHECK_CHECK_LEFTOVERS_H_
#define PALVOR_KIT_CHECK_CHECK_LEFTOVERS_H_

#include <string>

#include "kit/fault_log.h"

namespace kit {

// Reports every tree <path>_<t>.stree that <path>.stdiv, as long as it is, does
// not list; and an emptied <path>.stdiv that is younger than the finished array
// <path>.stpsa: writing an array empties it at the beginning, so that a run for
// trees must have begun since, and ended before it wrote any.
void checkLeftovers(const std::string& path, FaultLog& faults);

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECK_LEFTOVERS_H_
