// Numbers for equal stretches.

#ifndef PALVOR_TEXT_STRETCH_NUMBERS_H_
#define PALVOR_TEXT_STRETCH_NUMBERS_H_

#include <cstdint>
#include <span>
#include <vector>

#include "palvor/text/stretch.h"

namespace palvor {

// How many numbers stand behind the last one, so that vectors may read them.
inline constexpr size_t kNumbersBehind = 16;

// Per stretch, the number of the first one with the same anchor, extent (up to
// the start of the next), distance to the end, and symbols. The last stretch is
// followed by an end mark, whose `start` is not looked at: the axis ends at
// `axisEnd`.
std::vector<uint32_t> numberStretches(std::span<const Stretch> stretches,
                                      uint32_t axisEnd);

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_NUMBERS_H_
