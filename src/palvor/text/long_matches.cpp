#include "palvor/text/long_matches.h"

#include <utility>

namespace palvor {
namespace {

constexpr uint32_t kSlotBits = 16;
constexpr uint32_t kBlockBits = 12;  // log2 of a block's bits

// A pair is looked for from the side of the lower input, or bit.
void putInOrder(StringBit& a, StringBit& b) {
  if (a.input > b.input || (a.input == b.input && a.bit > b.bit)) {
    std::swap(a, b);
  }
}

int64_t shiftOf(StringBit a, StringBit b) {
  return static_cast<int64_t>(b.bit) - static_cast<int64_t>(a.bit);
}

}  // namespace

LongMatches::LongMatches()
    : matches_(int64_t{1} << kSlotBits, "the long matches") {}

LongMatches::Match& LongMatches::slotOf(uint32_t a, uint32_t b, int64_t shift,
                                        uint32_t block) const {
  uint64_t hash = (static_cast<uint64_t>(a) << 32 | b) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ static_cast<uint64_t>(shift)) * 0xC2B2AE3D27D4EB4FU;
  hash = (hash ^ hash >> 32 ^ block) * 0x165667B19E3779F9U;
  return matches_.data()[hash >> (64 - kSlotBits)];
}

uint32_t LongMatches::known(StringBit a, StringBit b) const {
  putInOrder(a, b);
  const int64_t shift = shiftOf(a, b);
  const Match& match = slotOf(a.input, b.input, shift, a.bit >> kBlockBits);
  const bool covers = match.a == a.input && match.b == b.input &&
                      match.shift == shift && match.from <= a.bit &&
                      a.bit < match.to;
  return covers ? match.to - a.bit : 0;
}

void LongMatches::remember(StringBit a, StringBit b, uint32_t bits,
                           uint32_t read) {
  putInOrder(a, b);
  const Match match = {a.input, b.input, shiftOf(a, b), a.bit, a.bit + bits};
  // Later comparisons look in the block that they have come to: put it where
  // it begins, and where it was read without help.
  uint32_t block = a.bit >> kBlockBits;
  const uint32_t last = (a.bit + read) >> kBlockBits;
  do {
    slotOf(match.a, match.b, match.shift, block) = match;
  } while (++block <= last);
}

}  // namespace palvor
