// What a comparison of two suffixes finds.

#ifndef PALVOR_TEXT_COMPARISON_H_
#define PALVOR_TEXT_COMPARISON_H_

#include <algorithm>
#include <bit>
#include <cstdint>

namespace palvor {

struct Comparison {
  static constexpr int kFirstbit = 1;
  static constexpr int kAfter = 2;
  static constexpr int kEqual = 4;
  static constexpr int kSettled = 8;

  int common;  // bits that the suffixes share
  int how;     // the sum of what is true of these:
  int words;   // words of the strings that had to be examined, those included
               // that were remembered to be equal

  // They part before the shorter one ends.
  bool firstbit() const { return (how & kFirstbit) != 0; }
  // The first one sorts after the second.
  bool after() const { return (how & kAfter) != 0; }
  // They are the same text: neither sorts after the other.
  bool equal() const { return (how & kEqual) != 0; }
  // The prefix words told it, and the strings were not looked at.
  bool settled() const { return (how & kSettled) != 0; }
};

// Where two sequences of bits part.
struct Parting {
  int bit;  // the first that differs; only if one does
  bool differ;
  bool after;  // the first sequence has the 1 there
};

// Of words `w` (counted from the first) that differ.
[[gnu::always_inline]] inline Parting partingOf(uint32_t a, uint32_t b, int w) {
  return {32 * w + std::countl_zero(a ^ b), true, a > b};
}

// What follows for two suffixes that are `bitsA` and `bitsB` long from where
// they part, counted from their bit `from` on; before it they agree. Zero bits
// follow the end of a string, so a difference past the shorter suffix's end
// still says which is the longer. If no bit differs, all of the shorter was
// looked at.
[[gnu::always_inline]] inline Comparison concludedFrom(const Parting& parting,
                                                       int from, int bitsA,
                                                       int bitsB) {
  const int shorter = std::min(bitsA, bitsB);
  if (!parting.differ) {
    return {shorter,
            bitsA > bitsB    ? Comparison::kAfter
            : bitsA == bitsB ? Comparison::kEqual
                             : 0,
            0};
  }
  const int after = parting.after ? Comparison::kAfter : 0;
  if (from + parting.bit >= shorter) return {shorter, after, 0};
  return {from + parting.bit, Comparison::kFirstbit | after, 0};
}

// The first bit of suffixes that is examined where `known` bits are known to be
// equal: a word of the string of the first suffix, whose position in characters
// is given, begins with it.
inline int firstBitExamined(uint32_t position, int known) {
  return known -
         static_cast<int>((static_cast<unsigned>(known) + 2 * position) & 31);
}

// Words of the strings examined from a bit on, to find out that suffixes, the
// shorter one `shorter` bits long, share `common` bits.
inline int wordsFrom(int from, int shorter, int common) {
  return std::max(((std::min(common, shorter - 1) - from) >> 5) + 1, 0);
}

}  // namespace palvor

#endif  // PALVOR_TEXT_COMPARISON_H_
