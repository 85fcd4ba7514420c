// A packed string as the merge holds it, and what is asked of it by characters.
//
// Two bits a character, A = 00, C = 01, G = 10, T = 11, sixteen characters a
// word, the first of them in its top bits. Behind the words that hold
// characters stands one more, the trailer: reads may touch it, and nothing
// behind it. Positions and lengths here are in characters.

#ifndef PALVOR_TEXT_PACKED_STRING_H_
#define PALVOR_TEXT_PACKED_STRING_H_

#include <algorithm>
#include <bit>
#include <cstdint>

namespace palvor {

// Bits: an even number, two for each character, below 2^31.
struct PackedString {
  const uint32_t* words = nullptr;
  uint32_t bits = 0;
};

inline uint32_t lengthOf(const PackedString& string) { return string.bits / 2; }

// Whether a string is as this system writes it: of whole characters, with zeros
// behind them up to the end of the trailer. Files may hold others.
inline bool isWhole(const PackedString& string) {
  if (string.bits % 2 != 0) return false;
  const uint32_t rest = string.bits % 32;
  const uint32_t words = string.bits / 32;
  if (rest == 0) return string.words[words] == 0;
  return string.words[words] << rest == 0 && string.words[words + 1] == 0;
}

// What stands at a position: a character's code and one more, or 0 at the end
// of the string. Ordered as suffixes are: an end comes before any character.
inline constexpr uint32_t kEndOfString = 0;

inline uint32_t symbolAt(const PackedString& string, uint32_t position) {
  if (position >= lengthOf(string)) return kEndOfString;
  return (string.words[position / 16] >> (30 - 2 * (position % 16)) & 3) + 1;
}

// Sixteen characters from a position on, which must be inside the string. What
// comes behind the end of the string may be anything.
inline uint32_t sixteenCharacters(const PackedString& string,
                                  uint32_t position) {
  const uint32_t* words = string.words + position / 16;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  return static_cast<uint32_t>(pair << 2 * (position % 16) >> 32);
}

// 32 characters from a position on, of which the first 17 must be inside the
// string.
inline uint64_t manyCharacters(const PackedString& string, uint32_t position) {
  const uint32_t* words = string.words + position / 16;
  const uint64_t pair = static_cast<uint64_t>(words[0]) << 32 | words[1];
  const uint32_t shift = 2 * (position % 16);
  return pair << shift | static_cast<uint64_t>(words[2]) << shift >> 32;
}

// By how many characters two strings go on alike from two positions on, which
// may be their ends; at most `limit`.
inline uint32_t commonCharacters(const PackedString& a, uint32_t positionA,
                                 const PackedString& b, uint32_t positionB,
                                 uint32_t limit) {
  const uint32_t most =
      std::min({lengthOf(a) - positionA, lengthOf(b) - positionB, limit});
  uint32_t common = 0;
  while (most - common >= 32) {
    const uint64_t differing = manyCharacters(a, positionA + common) ^
                               manyCharacters(b, positionB + common);
    if (differing != 0) {
      return common + static_cast<uint32_t>(std::countl_zero(differing)) / 2;
    }
    common += 32;
  }
  while (common < most) {
    const uint32_t differing = sixteenCharacters(a, positionA + common) ^
                               sixteenCharacters(b, positionB + common);
    if (differing != 0) {
      common += static_cast<uint32_t>(std::countl_zero(differing)) / 2;
      break;
    }
    common += 16;
  }
  return std::min(common, most);
}

// By how many characters before two positions the strings are alike, at most
// `limit`, which must not reach over the start of either.
inline uint32_t commonCharactersBefore(const PackedString& a,
                                       uint32_t positionA,
                                       const PackedString& b,
                                       uint32_t positionB, uint32_t limit) {
  uint32_t common = 0;
  while (limit - common >= 16) {
    const uint32_t differing = sixteenCharacters(a, positionA - common - 16) ^
                               sixteenCharacters(b, positionB - common - 16);
    if (differing != 0) {
      return common + static_cast<uint32_t>(std::countr_zero(differing)) / 2;
    }
    common += 16;
  }
  while (common < limit && symbolAt(a, positionA - common - 1) ==
                               symbolAt(b, positionB - common - 1)) {
    common++;
  }
  return common;
}

// The bits that two different symbols share: 1 if the first bits of their
// characters are equal, else 0. An end shares none, not even with another.
constexpr uint32_t sharedBits(uint32_t a, uint32_t b) {
  // A bit for each pair: the first bits of symbols 1 and 2 are 0, of 3 and 4 1.
  constexpr uint64_t kLow = uint64_t{0b110} << 8 | uint64_t{0b110} << 16;
  constexpr uint64_t kHigh = uint64_t{0b11000} << 24 | uint64_t{0b11000} << 32;
  return static_cast<uint32_t>((kLow | kHigh) >> (8 * a + b)) & 1;
}

}  // namespace palvor

#endif  // PALVOR_TEXT_PACKED_STRING_H_
