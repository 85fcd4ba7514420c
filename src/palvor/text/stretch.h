// A stretch: a piece of a string that runs along another piece of text.
//
// All strings lie one behind the other on one axis of positions, each followed
// by one position for its end (text/stretches.h). A stretch begins at `start`,
// and its text is that from `anchor` on, up to `end`, the first position where
// the two differ: a true difference, by the strings' own characters. It says
// where the suffixes that begin between its start and that of the next stretch
// are anchored; the next one may begin before `end`, but never behind the
// position after it, so that stretches tell the text of the whole string.
//
//   anchor  ...GATTACAGATTTCAG...
//              |||||||||||X
//   string  ...GATTACAGATTACAG...     X: `end`, symbol A, anchor symbol T
//              ^ start
//
// What is like nothing before it is anchored at itself, and ends with its
// string.

#ifndef PALVOR_TEXT_STRETCH_H_
#define PALVOR_TEXT_STRETCH_H_

#include <cstdint>

#include "palvor/text/packed_string.h"

namespace palvor {

struct Stretch {
  uint32_t start;
  uint32_t anchor;
  uint32_t end;
  // What stands at `end` (symbolAt): the string's symbol, and 8 times the
  // anchor's. They differ, unless both strings end there.
  uint32_t symbols;
};
static_assert(sizeof(Stretch) == 16);

inline uint32_t symbolOf(const Stretch& stretch) { return stretch.symbols & 7; }
inline uint32_t anchorSymbolOf(const Stretch& stretch) {
  return stretch.symbols >> 3;
}
inline uint32_t makeSymbols(uint32_t symbol, uint32_t anchorSymbol) {
  return symbol | anchorSymbol << 3;
}

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_H_
