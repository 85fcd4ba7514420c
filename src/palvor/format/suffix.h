// The suffix record: one suffix of one input string.
//
// A .stpsa file is an array of these records and nothing else, in ascending
// suffix order (palvor/text/compare.h), every word little-endian. In memory the
// record has exactly the file layout.

#ifndef PALVOR_FORMAT_SUFFIX_H_
#define PALVOR_FORMAT_SUFFIX_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace palvor {

static_assert(std::endian::native == std::endian::little,
              "files are read and written as they stand in memory");

struct Suffix {
  uint32_t input;    // input number << 2, and two flag bits, carried unchanged
  uint32_t pos;      // first character's position in its input, in characters
  uint32_t prefix0;  // characters 0 to 15, packed (palvor/format/packing.h)
  uint32_t prefix1;  // characters 16 to 31, packed; zero bits past the end
};
static_assert(sizeof(Suffix) == 16);

// Index of the suffix's string among the inputs.
inline uint32_t inputNumber(const Suffix& suffix) { return suffix.input >> 2; }

// The prefix words as one number: characters from its highest bits on, zero
// bits past the end. It is ordered as the suffixes are.
inline uint64_t prefixBits(const Suffix& suffix) {
  return uint64_t{suffix.prefix0} << 32 | suffix.prefix1;
}

// The same for comparisons, in which it is often read. Signed numbers compare
// faster, so its top bit is inverted: it orders as the words do.
inline int64_t prefixKey(const Suffix& suffix) {
  // Both at once: one load, instead of two that are put together.
  uint64_t words;
  std::memcpy(
      &words,
      reinterpret_cast<const char*>(&suffix) + offsetof(Suffix, prefix0),
      sizeof words);
  return static_cast<int64_t>(std::rotl(words, 32) ^ uint64_t{1} << 63);
}

// The producer's two flag bits; nothing here interprets them.
inline uint32_t suffixFlags(const Suffix& suffix) { return suffix.input & 3; }

}  // namespace palvor

#endif  // PALVOR_FORMAT_SUFFIX_H_
