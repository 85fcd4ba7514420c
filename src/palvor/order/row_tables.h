// The rows of few streams' listed suffixes, in order, by their keys (prefixKey)
// and states:
//
//   bits 63..32  entry, with the suffix before, or the one emitted last
//   bit 31       whether it is the suffix's own entry, with the one before it
//                in its stream
//   bit 30       whether it stands among others of its key as it came
//   bits 14..8   the suffix's length in bits, 127 if that is 64 or more
//   bits 7..0    stream
//
// While the head is moved, its row 0 holds the suffix emitted last. Behind the
// last suffix stand the largest key and entry, and a long suffix.

#ifndef PALVOR_ORDER_ROW_TABLES_H_
#define PALVOR_ORDER_ROW_TABLES_H_

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "palvor/format/lcp_entry.h"

namespace palvor {

constexpr int kMostRows = 64;  // as many as a word has bits

constexpr int64_t kLargestKey = std::numeric_limits<int64_t>::max();

constexpr int kEntryShift = 32;
constexpr int kCommonShift = 33;  // of the length in the entry
constexpr int64_t kUnchanged = int64_t{1} << 31;
constexpr int64_t kTied = int64_t{1} << 30;
constexpr int kLengthShift = 8;
constexpr int64_t kLong = 127;  // 64 bits or more
constexpr int64_t kStream = 255;

// What stands in a state beside the entry: stream and length.
constexpr int64_t kSuffixBits = kUnchanged - 1;

constexpr int64_t makeState(LcpEntry entry, int64_t suffixBits) {
  return static_cast<int64_t>(entry) << kEntryShift | suffixBits;
}
constexpr int64_t makeSuffixBits(int stream, int length) {
  return (length < 64 ? length : kLong) << kLengthShift | stream;
}
constexpr int streamOf(int64_t state) {
  return static_cast<int>(state & kStream);
}
constexpr LcpEntry entryOf(int64_t state) {
  return static_cast<LcpEntry>(state >> kEntryShift);
}
constexpr bool isShort(int64_t state) {
  return (state >> kLengthShift & kLong) < 64;
}

// The entry of two suffixes that part within the prefix words.
[[gnu::always_inline]] inline LcpEntry entryOfKeys(int64_t a, int64_t b) {
  return makeLcpEntry(std::countl_zero(static_cast<uint64_t>(a ^ b)), 1);
}

// Of a suffix that stands among others of its key as it came: more than keys
// tell.
constexpr LcpEntry kTiedEntry = makeLcpEntry(64, 1);

struct RowTables {
  RowTables() { clear(); }

  void clear() {
    std::ranges::fill(keys, kLargestKey);
    std::ranges::fill(states, makeState(std::numeric_limits<int>::max(),
                                        kLong << kLengthShift));
    count = 0;
  }

  void dropFirst() {
    std::copy(keys + 1, keys + kMostRows + 1, keys);
    std::copy(states + 1, states + kMostRows + 1, states);
    count--;
  }

  alignas(64) int64_t keys[kMostRows + 1];
  alignas(64) int64_t states[kMostRows + 1];
  int count;  // of suffixes that are listed
};

// A bit for each row.
template <int kRoom>
using RowBits = std::conditional_t<kRoom <= 32, uint32_t, uint64_t>;

// All rows before one, which may be the end.
template <int kRoom>
[[gnu::always_inline]] inline RowBits<kRoom> rowsBelow(int row) {
  return row == 0 ? 0 : static_cast<RowBits<kRoom>>(~uint64_t{0} >> (64 - row));
}

}  // namespace palvor

#endif  // PALVOR_ORDER_ROW_TABLES_H_
