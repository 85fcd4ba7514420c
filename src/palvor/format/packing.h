// How characters become bits: two a character, A = 00, C = 01, G = 10,
// T = 11, so that comparing bits compares characters.
//
// A packed string is an array of 32-bit words, sixteen characters a word, the
// first character of a word in bits 31-30. So bit k of a string lies in word
// k / 32, at bit position 31 - k % 32. A string of B bits has ceil(B / 32)
// data words, zero bits after its last character, and one more word, the
// trailer, which is 0: it reads as if followed by A characters up to and
// across the next word boundary, and a slice may run one word past the data.
//
// Example: GATTC is the word 0x8F400000, then the trailer 0x00000000.

#ifndef PALVOR_FORMAT_PACKING_H_
#define PALVOR_FORMAT_PACKING_H_

#include <array>
#include <cstdint>

namespace palvor {

constexpr std::array<unsigned char, 256> makePackedCodes() {
  std::array<unsigned char, 256> codes{};
  for (unsigned i = 0; i < codes.size(); i++) {
    // In each two-bit field, f becomes f ^ (f >> 1): G and T change places.
    codes[i] = static_cast<unsigned char>(i ^ ((i >> 1) & 0x55));
  }
  return codes;
}

// Packed codes of four characters, by the index that their bits 2-1 form, the
// first character in bits 7-6. Those two bits tell A, C, G and T apart in
// either case; any other byte gets whichever code its bits give.
inline constexpr std::array<unsigned char, 256> kPackedCodes =
    makePackedCodes();

// Packs the whole groups of 16 among the first `n` characters of `text` into
// `out`, one word a group, and returns the number of words written, n / 16.
// The last n % 16 characters and the trailer are the caller's business.
int packCharacters(unsigned* out, char* text, int n);

// Words of a string of `bits` bits (0 or more): its data words, and those
// together with the trailer.
inline int64_t dataWords(int64_t bits) { return ((bits - 1) >> 5) + 1; }
inline int64_t storedWords(int64_t bits) { return dataWords(bits) + 1; }

// The 32 bits of a packed string from bit `start` on, the first of them in bit
// 31. Reads word start / 32 and the word after it, so `start` must lie before
// the end of the data words.
inline uint32_t sliceAt(const uint32_t* words, uint64_t start) {
  const uint32_t* word = words + (start >> 5);
  const uint64_t pair = static_cast<uint64_t>(word[0]) << 32 | word[1];
  return static_cast<uint32_t>(pair << (start & 31) >> 32);
}

}  // namespace palvor

#endif  // PALVOR_FORMAT_PACKING_H_
