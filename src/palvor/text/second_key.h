// The second key: where a suffix parts from the text that it is anchored at,
// as one number that orders suffixes of equal anchor.
//
// Let the suffixes p and q be anchored at the same position, whose text is t.
// p agrees with t for l characters, where it has the symbol x and t has y; so
// its common prefix with t is L = 2 l bits, and one more if x and y begin with
// the same bit. It parts *downwards* if x < y, *upwards* if x > y; if both end
// there, p and t are the *same*. Symbols are 0 for an end, then the characters
// (text/packed_string.h).
//
// Claim 1. If L(p) < L(q), the common prefix of p and q is L(p) bits, and p
// sorts before q if and only if it parts downwards, or is the same as t.
//   q has the first L(p) bits of t, and p has them, too. What stands behind
//   them in t stands in q as well: if t has a bit there, q has that bit, since
//   L(q) > L(p) bits agree, while p has another or ends; the order of p and q
//   is that of p and t. And t does not end there: then L(q) could not be more.
//   So p is not the same as t, but for the case that q is, too, with L(p) =
//   L(q). (What is said of "the same" in the claim is never used.)
//
// Claim 2. If L(p) = L(q) and the keys differ, the common prefix is 2 l bits,
// and as many more as their symbols share (sharedBits), and the order is that
// of the keys.
//   L / 2, rounded down, is l for both. The first l characters agree, and the
//   symbols are what comes next. Both in one direction: the keys are ordered by
//   the symbols, and these differ. In different directions, or one of them the
//   same as t: x(p) < y <= x(q) or the like, and so are the keys.
//
// Claim 3. If the keys are equal, p and q agree for l characters and have the
// same symbol behind them. If that is an end, they are equal. Otherwise they
// agree for l + 1 characters, and nothing more is known: what comes behind has
// to be looked at, by the stretches there (text/stretch_comparison.h).
//   So the key is exact unless the keys are equal and no suffix ends: an
//   inherited difference.
//
// Together: of suffixes with equal anchor the order is that of the keys, as
// plain integers. Downwards come first, the nearest difference first; then
// those that are the same as t; then upwards, the nearest difference last. The
// common prefix of two with different L is the smaller L.
//
//   bit 36       set if it parts upwards
//   bit 35       set if it is the same as t; so are some bits below
//   bits 34..3   L, inverted if it parts upwards
//   bits 2..0    the symbol x
//
// How a merge that knows the common prefixes of listed suffixes should use it.
// Equal prefix words say that two suffixes agree for 32 characters. So take the
// anchor 32 characters on: Stretches::stretchAt(axisPosition(input, pos + 32)),
// for all records of a buffer at once, as anchors depend on nothing else; the
// common prefix of the suffixes is then 64 bits and that of their keys. A row
// holds, beside the prefix keys, per listed suffix:
//
//   anchors  its anchor's position; a number of its own, such as 2^32 + the
//            stream, for a suffix that has none or is not longer than 64 bits
//   keys     its second key
//
// A new suffix s with prefix key w, anchor a and second key k:
//   1. equal = places whose prefix key is w, as today; if there are none, all
//      is settled by the prefix keys.
//   2. known = places of `equal` whose anchor is a. If known = equal, no string
//      has to be read unless k itself is among them: the place is behind all
//      with a prefix key below w, and all of `known` with a key below k, which
//      a popcount of two masks gives. Entries: with the one before and the one
//      behind, min(L, L') + 64 bits each by partingBits, as vectors do it for
//      the prefix keys (lanes whose L differs; the two neighbours are all that
//      is needed, so that a scalar step does). Firstbit is 1, unless the common
//      prefix is the length of the shorter one, which keysEnd tells.
//   3. Those of `known` with the key k, or with the same L as a neighbour: walk
//      them as findAmongEqualKeys does, with StretchComparison::compare for the
//      pair; where common prefixes are stored, a walk skips those that part
//      elsewhere. Their stretches were asked for ahead.
//   4. The rest of `equal`, with other anchors, stand among the known: the
//   known
//      bound the range in which they can change the place. Only those between
//      the known neighbours, and whose stored common prefixes the walk does not
//      skip, are compared, by StretchComparison::compare.

#ifndef PALVOR_TEXT_SECOND_KEY_H_
#define PALVOR_TEXT_SECOND_KEY_H_

#include <algorithm>
#include <cstdint>

#include "palvor/text/packed_string.h"

namespace palvor {

inline constexpr uint64_t kUpwards = uint64_t{1} << 36;
inline constexpr uint64_t kSame = uint64_t{1} << 35;
inline constexpr uint64_t kPartingBits = (uint64_t{1} << 35) - 1;

// Of a suffix that agrees with its anchor's text for `characters` characters
// and has `symbols` behind them (text/stretch.h).
inline uint64_t secondKey(uint32_t characters, uint32_t symbols) {
  const uint32_t own = symbols & 7;
  const uint32_t anchors = symbols >> 3;
  const uint64_t bits = 2 * uint64_t{characters} + sharedBits(own, anchors);
  // The same symbol is that of an end, which shares no bits.
  if (own == anchors) return kSame | bits << 3;
  if (own < anchors) return bits << 3 | own;
  return kUpwards | ((~bits << 3) & kPartingBits) | own;
}

// L, in bits.
inline uint32_t partingBits(uint64_t key) {
  const uint64_t inverted = key & kUpwards ? ~key : key;
  return static_cast<uint32_t>((inverted & kPartingBits) >> 3);
}

// The symbol x.
inline uint32_t symbolOf(uint64_t key) {
  return static_cast<uint32_t>(key & 7);
}

// The common prefix, in bits, of two suffixes with equal anchors and different
// keys.
inline uint32_t commonBits(uint64_t a, uint64_t b) {
  const uint32_t bitsA = partingBits(a);
  const uint32_t bitsB = partingBits(b);
  if (bitsA != bitsB) return std::min(bitsA, bitsB);
  return (bitsA & ~1U) + sharedBits(symbolOf(a), symbolOf(b));
}

}  // namespace palvor

#endif  // PALVOR_TEXT_SECOND_KEY_H_
