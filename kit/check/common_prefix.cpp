#include "kit/check/common_prefix.h"

#include <algorithm>
#include <bit>

namespace kit {
namespace {

constexpr size_t kSlots = 1 << 16;
constexpr uint64_t kBlockBits = 1 << 16;

// Shorter matches are read again sooner than looked up.
constexpr uint64_t kShortest = 2048;  // bits

}  // namespace

CommonPrefix::CommonPrefix(const CheckedStrings& strings)
    : strings_(strings), matches_(kSlots) {}

CommonPrefix::Match& CommonPrefix::slot(uint32_t a, uint32_t b, int64_t shift,
                                        uint64_t bit) {
  uint64_t hash = (uint64_t{a} << 32 | b) * 0x9E3779B97F4A7C15u;
  hash = (hash ^ static_cast<uint64_t>(shift)) * 0xC2B2AE3D27D4EB4Fu;
  hash = (hash ^ bit / kBlockBits) * 0x165667B19E3779F9u;
  return matches_[hash >> 48];
}

uint64_t CommonPrefix::bits(const Place& a, const Place& b) {
  const uint64_t start = 2 * a.pos;
  const uint64_t end =
      start + std::min(strings_.restBits(a), strings_.restBits(b));
  const auto shift =
      static_cast<int64_t>(2 * b.pos) - static_cast<int64_t>(2 * a.pos);
  uint64_t bit = start;
  uint64_t lookUp = start + kShortest;
  uint64_t readTo = end;  // from here on, nothing was read anew
  while (bit < end) {
    if (bit >= lookUp) {
      const Match& known = slot(a.input, b.input, shift, bit);
      if (known.a == a.input && known.b == b.input && known.shift == shift &&
          known.from <= bit && bit < known.to) {
        readTo = std::min(readTo, bit);
        bit = known.to;
      }
      lookUp = bit + kShortest;
      continue;
    }
    const uint64_t x = strings_.slice(a.input, bit);
    const uint64_t y = strings_.slice(
        b.input, static_cast<uint64_t>(static_cast<int64_t>(bit) + shift));
    if (x != y) {
      bit += static_cast<uint64_t>(std::countl_zero(x ^ y));
      break;
    }
    bit += 64;
  }
  bit = std::min(bit, end);
  if (bit - start >= kShortest) {
    remember({a.input, b.input, shift, start, bit}, std::min(readTo, bit));
  }
  return bit - start;
}

// Puts a match where later pairs will look: in the block in which it begins,
// and in those after it that had to be read, up to bit `readTo`.
void CommonPrefix::remember(const Match& match, uint64_t readTo) {
  uint64_t at = match.from;
  do {
    slot(match.a, match.b, match.shift, at) = match;
    at = (at / kBlockBits + 1) * kBlockBits;
  } while (at < readTo);
}

}  // namespace kit
