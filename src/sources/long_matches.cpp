#include "sources/long_matches.h"

#include <utility>

namespace {

constexpr uint32_t kSlotBits = 16;
constexpr uint32_t kBlockBits = 12;  // log2 of a block's bits

// Bits `from` to `to` - 1 of input a are those of input b, `shift` bits on.
struct Match {
  uint32_t a;
  uint32_t b;
  int64_t shift;
  uint32_t from;
  uint32_t to;
};

Match matches[1 << kSlotBits];  // an empty one has `from` = `to` = 0

// A pair is looked for from the side of the lower input, or bit.
void putInOrder(BitPlace& a, BitPlace& b) {
  if (a.input > b.input || (a.input == b.input && a.bit > b.bit)) {
    std::swap(a, b);
  }
}

int64_t shiftOf(BitPlace a, BitPlace b) {
  return static_cast<int64_t>(b.bit) - static_cast<int64_t>(a.bit);
}

Match& slotOf(uint32_t a, uint32_t b, int64_t shift, uint32_t block) {
  uint64_t hash = (static_cast<uint64_t>(a) << 32 | b) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ static_cast<uint64_t>(shift)) * 0xC2B2AE3D27D4EB4FU;
  hash = (hash ^ hash >> 32 ^ block) * 0x165667B19E3779F9U;
  return matches[hash >> (64 - kSlotBits)];
}

}  // namespace

uint32_t knownMatch(BitPlace a, BitPlace b) {
  putInOrder(a, b);
  const int64_t shift = shiftOf(a, b);
  const Match& match = slotOf(a.input, b.input, shift, a.bit >> kBlockBits);
  const bool covers = match.a == a.input && match.b == b.input &&
                      match.shift == shift && match.from <= a.bit &&
                      a.bit < match.to;
  return covers ? match.to - a.bit : 0;
}

void rememberMatch(BitPlace a, BitPlace b, uint32_t bits, uint32_t read) {
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
