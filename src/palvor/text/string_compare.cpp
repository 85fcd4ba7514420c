#include "palvor/text/string_compare.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "palvor/text/string_compare.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {
namespace {

// A packed string from a bit on, read in slices of 32 bits that need not be
// aligned to its words.
struct Slices {
  Slices(const uint32_t* string, uint32_t start)
      : words(string + (start >> 5)), shift(start & 31) {}

  const uint32_t* words;
  uint32_t shift;  // bits of the first word before the first slice
};

// Slice w. Reads words w and w + 1.
HWY_INLINE uint32_t slice(const Slices& slices, int w) {
  const uint32_t* words = slices.words + w;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return static_cast<uint32_t>(pair << slices.shift >> 32);
}

// The 64 bits of slices w and w + 1. Reads words w to w + 2.
HWY_INLINE uint64_t twoSlices(const Slices& slices, int w) {
  const uint32_t* words = slices.words + w;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return pair << slices.shift |
         static_cast<uint64_t>(words[2]) << slices.shift >> 32;
}

// Slices compared before the long matches are asked: a shorter match is read
// sooner than looked up.
constexpr int kPatience = 128;

// Where slices `from` to `to` - 1 part. Each slice must begin before the end of
// its string's data, so that the trailer is the last word read.
HWY_INLINE Parting partOneByOne(const Slices& a, const Slices& b, int from,
                                int to) {
  int w = from;
  for (; w + 1 < to; w += 2) {
    const uint64_t x = twoSlices(a, w);
    const uint64_t y = twoSlices(b, w);
    if (x != y) return {32 * w + std::countl_zero(x ^ y), true, x > y};
  }
  if (w >= to || slice(a, w) == slice(b, w)) return {};
  return partingOf(slice(a, w), slice(b, w), w);
}

#if PALVOR_HAS_VECTORS

// Of the vectors of slices that begin with w, which slices differ.
template <class Vector>
HWY_INLINE uint64_t differing(Vector wordsA, Vector wordsB, Vector nextB,
                              const Slices& b) {
  return bitsOf(Words(), hn::Ne(wordsA, slicesOf(wordsB, nextB,
                                                 static_cast<int>(b.shift))));
}

// The same; the slices of `a` begin with a word.
HWY_INLINE Parting part(const Slices& a, const Slices& b, int from, int to) {
  const Words words;
  constexpr int kLanes = static_cast<int>(hn::MaxLanes(Words()));
  int w = from;
  for (; w + kLanes <= to; w += kLanes) {
    const uint64_t found =
        differing(hn::LoadU(words, a.words + w), hn::LoadU(words, b.words + w),
                  hn::LoadU(words, b.words + w + 1), b);
    if (found != 0) {
      const int differs = w + std::countr_zero(found);
      return partingOf(a.words[differs], slice(b, differs), differs);
    }
  }
#if HWY_ARCH_X86
  // What lies behind the string is not read.
  if (w >= to) return {};
  const auto rest = hn::FirstN(words, static_cast<size_t>(to - w));
  const uint64_t found =
      differing(hn::MaskedLoad(rest, words, a.words + w),
                hn::MaskedLoad(rest, words, b.words + w),
                hn::MaskedLoad(rest, words, b.words + w + 1), b);
  if (found == 0) return {};
  const int differs = w + std::countr_zero(found);
  return partingOf(a.words[differs], slice(b, differs), differs);
#else
  return partOneByOne(a, b, w, to);
#endif
}

#else

HWY_INLINE Parting part(const Slices& a, const Slices& b, int from, int to) {
  return partOneByOne(a, b, from, to);
}

#endif  // PALVOR_HAS_VECTORS

// Compares slices kPatience to n - 1 of those that begin at two bits and are
// `common` bits long, passing over what is known to match.
HWY_NOINLINE Parting partLong(LongMatches& matches, StringBit bitA, Slices a,
                              StringBit bitB, Slices b, int n, int common) {
  Parting parting{};
  int readTo = n;  // slices before it were read
  int w = kPatience;
  while (w < n && !parting.differ) {
    const auto bits = static_cast<uint32_t>(32 * w);
    const uint32_t known = matches.known({bitA.input, bitA.bit + bits},
                                         {bitB.input, bitB.bit + bits});
    if (known >= 32) {
      readTo = std::min(readTo, w);
      w += static_cast<int>(known / 32);
    }
    const int next = std::min(n, w + kPatience);
    if (w < next) parting = part(a, b, w, next);
    w = next;
  }
  const int equal = parting.differ ? std::min(parting.bit, common) : common;
  const int64_t read = std::min<int64_t>(int64_t{32} * readTo, equal);
  matches.remember(bitA, bitB, static_cast<uint32_t>(equal),
                   static_cast<uint32_t>(read));
  return parting;
}

Comparison compareStrings(const Collection& text, LongMatches& matches,
                          const Suffix& a, const Suffix& b, int known) {
  const PackedString& stringA = text[inputNumber(a)];
  const PackedString& stringB = text[inputNumber(b)];
  const int bitsA = static_cast<int>(stringA.bits - 2 * a.pos);
  const int bitsB = static_cast<int>(stringB.bits - 2 * b.pos);
  const int shorter = std::min(bitsA, bitsB);
  const int from = firstBitExamined(a.pos, known);
  const auto offset = static_cast<uint32_t>(from);
  const StringBit bitA = {inputNumber(a), 2 * a.pos + offset};
  const StringBit bitB = {inputNumber(b), 2 * b.pos + offset};
  const Slices slicesA(stringA.words, bitA.bit);
  const Slices slicesB(stringB.words, bitB.bit);
  const int rest = shorter - from;
  const int words = ((rest - 1) >> 5) + 1;
  Parting parting{};
  // What is said to be known can be more than there is.
  if (words > 0)
    parting = part(slicesA, slicesB, 0, std::min(words, kPatience));
  if (!parting.differ && words > kPatience) {
    parting = partLong(matches, bitA, slicesA, bitB, slicesB, words, rest);
  }
  Comparison found = concludedFrom(parting, from, bitsA, bitsB);
  found.words = parting.differ ? (parting.bit >> 5) + 1 : std::max(words, 0);
  return found;
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace palvor {
StringCompare stringCompare(Processor processor) {
  return choose(PALVOR_VERSIONS(compareStrings), processor);
}

}  // namespace palvor

#endif  // HWY_ONCE
