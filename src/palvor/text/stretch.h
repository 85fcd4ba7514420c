// A stretch: a piece of a string that runs along another piece of text.
//
// All strings lie one behind the other on one axis (text/axis.h). A stretch
// begins at `start`, and its text is that from `anchor` on, up to `end`, the
// first position where the two differ: a true difference, by the strings' own
// characters. It says where the suffixes that begin between its start and that
// of the next stretch are anchored; the next one may begin before `end`, but
// never behind the position after it, so that stretches tell the text of the
// whole string.
//
//   anchor  ...GATTACAGATTTCAG...
//              |||||||||||X
//   string  ...GATTACAGATTACAG...     X: `end`, symbol A, anchor's symbol T
//              ^ start
//
// What is like nothing before it is anchored at itself, and ends with its
// string.
//
// Stretches that leave the same position of their anchors' text with the same
// symbol share an inherited difference. They are ranked by what comes behind
// it (text/stretch_ranks.h).

#ifndef PALVOR_TEXT_STRETCH_H_
#define PALVOR_TEXT_STRETCH_H_

#include <cstdint>

#include "palvor/text/packed_string.h"

namespace palvor {

struct Stretch {
  uint32_t start;
  uint32_t anchor;
  uint32_t end;
  // bits 2..0   what the string has at `end` (symbolAt)
  // bits 5..3   what the anchor's text has there; the same only if both end
  // bits 31..6  the rank; 0 if its symbol is an end
  uint32_t parting;
};
static_assert(sizeof(Stretch) == 16);

inline constexpr uint32_t kRankShift = 6;
inline constexpr uint32_t kRanks = 1U << (32 - kRankShift);

inline uint32_t makeParting(uint32_t symbol, uint32_t anchorSymbol) {
  return symbol | anchorSymbol << 3;
}
inline uint32_t symbolOf(uint32_t parting) { return parting & 7; }
inline uint32_t anchorSymbolOf(uint32_t parting) { return parting >> 3 & 7; }
inline uint32_t rankOf(uint32_t parting) { return parting >> kRankShift; }

// Where a stretch leaves its anchor's text, on the axis.
inline uint32_t leftAt(const Stretch& stretch) {
  return stretch.anchor + (stretch.end - stretch.start);
}

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_H_
