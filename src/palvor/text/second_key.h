// The second key: where a suffix parts from the text that it is anchored at,
// and what comes behind, as one number that orders suffixes of equal anchor.
//
// Let the suffixes p and q be anchored at the same position, whose text is t.
// p agrees with t for l characters, where it has the symbol x and t has y; so
// its common prefix with t is L = 2 l bits, and one more if x and y begin with
// the same bit. It parts *downwards* if x < y, *upwards* if x > y; if both end
// there, p and t are the *same*. Symbols are 0 for an end, then the characters
// (text/packed_string.h). All that leave t at the same place with the same
// symbol are ranked by the text behind it (text/stretch_ranks.h).
//
//   bit 62       set if it parts upwards
//   bit 61       set if it is the same as t
//   bits 60..29  L, inverted if it parts upwards
//   bits 28..26  the symbol x
//   bits 25..0   the rank
//
// Claim 1. If L(p) < L(q), the common prefix of p and q is L(p) bits, and p
// sorts before q if and only if it parts downwards.
//   q has the first L(p) bits of t, and so has p. What stands behind them in t
//   stands in q as well, since L(q) is more; t does not end there, or L(q)
//   could not be more. p has another bit there, or ends. So the order of p and
//   q is that of p and t, and p is not the same as t.
//
// Claim 2. If L(p) = L(q) and what stands above the ranks differs, the common
// prefix is 2 l bits, and one more if their symbols begin with the same bit;
// the order is that of the keys.
//   l is half of L, rounded down, for both. The first l characters agree, and
//   the symbols are what comes next. In one direction the keys are ordered by
//   the symbols, in different ones by the direction, with y between the
//   symbols, or equal to one that is the same as t.
//
// Claim 3. If the keys differ in their ranks alone, the order is that of the
// ranks, and the common prefix is 2 l + 2 bits and what the ranks say.
//
// Claim 4. If the keys are equal, so are the suffixes, unless the ranks say
// that nothing is known (Stretches::equalIfAlike): then the text has to be
// looked at from the (l + 1)th character on. The symbol of such keys is never
// an end.
//
// Together: among suffixes of equal anchor the order is that of the keys as
// plain integers, signed or not. Downwards come first, the nearest difference
// first; then those that are the same as t; then upwards, the nearest
// difference last.

#ifndef PALVOR_TEXT_SECOND_KEY_H_
#define PALVOR_TEXT_SECOND_KEY_H_

#include <algorithm>
#include <array>
#include <cstdint>

#include "palvor/text/stretch.h"

namespace palvor {

inline constexpr uint64_t kUpwards = uint64_t{1} << 62;
inline constexpr uint64_t kSame = uint64_t{1} << 61;
inline constexpr int kBitsShift = 29;    // of L
inline constexpr int kSymbolShift = 26;  // of x; below it stands the rank

// What a key holds beside its rank, for each pair of symbols x and y, number
// x + 8 y, if no character before them agrees.
inline constexpr auto kSymbolKeys = [] {
  std::array<uint64_t, 64> keys{};
  for (uint32_t pair = 0; pair < 64; pair++) {
    const uint32_t own = pair & 7;
    const uint32_t anchors = pair >> 3;
    const uint32_t bits = sharedBits(own, anchors);
    keys[pair] = (own > anchors ? kUpwards : 0) | (own == anchors ? kSame : 0) |
                 uint64_t{own > anchors ? ~bits : bits} << kBitsShift |
                 uint64_t{own} << kSymbolShift;
  }
  return keys;
}();

// Of a suffix that agrees with its anchor's text for `characters` characters,
// and parts as its stretch says (text/stretch.h). Without a branch: which way a
// suffix parts can't be foreseen.
inline uint64_t secondKey(uint32_t characters, uint32_t parting) {
  const uint64_t key = kSymbolKeys[parting & ((1U << kRankShift) - 1)];
  const uint64_t bits = uint64_t{characters} << (kBitsShift + 1);
  // L is more by these bits, or inverted.
  const uint64_t inverted = 0 - (key >> 62);
  return key + ((bits ^ inverted) - inverted) + rankOf(parting);
}

// L, in bits.
inline uint32_t partingBits(uint64_t key) {
  const auto up = static_cast<uint32_t>(key >> 62 & 1);
  return static_cast<uint32_t>(key >> kBitsShift) ^ (0 - up);
}

// The symbol x, and the rank.
inline uint32_t keySymbol(uint64_t key) {
  return static_cast<uint32_t>(key >> kSymbolShift) & 7;
}
inline uint32_t keyRank(uint64_t key) {
  return static_cast<uint32_t>(key) & (kRanks - 1);
}

// Whether two keys, of equal anchors, tell the common prefix without a look at
// ranks; and what it is then, in bits.
inline bool partBeforeRanks(uint64_t a, uint64_t b) {
  return (a ^ b) >> kSymbolShift != 0;
}
inline uint32_t commonBitsBeforeRanks(uint64_t a, uint64_t b) {
  const uint32_t bitsA = partingBits(a);
  const uint32_t bitsB = partingBits(b);
  // Without a branch, too.
  const uint32_t atOnce =
      (bitsA & ~1U) + sharedBits(keySymbol(a), keySymbol(b));
  return bitsA == bitsB ? atOnce : std::min(bitsA, bitsB);
}

// What they share if they don't part before their ranks, and the symbol is no
// end: the characters up to the difference, and that.
inline uint32_t bitsBeforeRanks(uint64_t key) {
  return (partingBits(key) & ~1U) + 2;
}

}  // namespace palvor

#endif  // PALVOR_TEXT_SECOND_KEY_H_
