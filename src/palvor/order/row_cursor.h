// What the rows know of a stream, and where its suffix goes.

#ifndef PALVOR_ORDER_ROW_CURSOR_H_
#define PALVOR_ORDER_ROW_CURSOR_H_

#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/format/suffix.h"

namespace palvor {

// A stream, as far as the hot path sees it.
struct RowCursor {
  const Suffix* current;     // its listed suffix
  const Suffix* lastTested;  // the last record of its buffer that is tested
  int64_t upcomingKey;  // of the record behind the current one, known before
                        // it is asked for; anything, if that has yet to be read
  LcpEntry own;         // of the current suffix with the one before it
};

// Where the head goes, and what changes.
struct RowMove {
  int row = 1;           // it goes before the suffix there
  LcpEntry entry = 0;    // with the suffix before it
  bool changes = false;  // the suffix in that row has another entry
  LcpEntry nextEntry = 0;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_ROW_CURSOR_H_
