// Bit vectors in arrays of 32-bit words, in the bit order of the packed
// strings (palvor/format/packing.h): bit k lies in word k / 32, at bit position
// 31 - k % 32, so that bit 0 is the top bit of word 0.
//
// A vector of n bits has ceil(n / 32) words. The word-wise functions take whole
// words: bits past n in the last word take part. Nothing is checked: the caller
// owns the vectors and vouches for their lengths.

#ifndef PALVOR_FORMAT_BIT_VECTOR_H_
#define PALVOR_FORMAT_BIT_VECTOR_H_

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace palvor {

// Words of a vector of n bits; none for n below 1.
constexpr int bitVectorWords(int n) { return n > 0 ? ((n - 1) >> 5) + 1 : 0; }

// The mask of bit k modulo 32 within its word.
constexpr uint32_t bitMask(int k) { return uint32_t{1} << ((31 - k) & 31); }

// Bit k, 0 or more.
inline bool bitAt(const uint32_t* vector, int k) {
  return (vector[k >> 5] & bitMask(k)) != 0;
}

inline void setBit(uint32_t* vector, int k) { vector[k >> 5] |= bitMask(k); }

// to |= from, to &= from, to = from, word by word; both may be the same vector.
inline void orBits(uint32_t* to, const uint32_t* from, int n) {
  for (int i = 0; i < bitVectorWords(n); i++) to[i] |= from[i];
}
inline void andBits(uint32_t* to, const uint32_t* from, int n) {
  for (int i = 0; i < bitVectorWords(n); i++) to[i] &= from[i];
}
inline void copyBits(uint32_t* to, const uint32_t* from, int n) {
  for (int i = 0; i < bitVectorWords(n); i++) to[i] = from[i];
}

// Number of 1 bits in the words of a vector.
inline int countBits(const uint32_t* vector, int n) {
  int count = 0;
  for (int i = 0; i < bitVectorWords(n); i++) count += std::popcount(vector[i]);
  return count;
}

// The first min(n, 32) bits as text, the first bit first.
inline std::string bitText(const uint32_t* vector, int n) {
  std::string text;
  for (int k = 0; k < std::min(n, 32); k++)
    text += bitAt(vector, k) ? '1' : '0';
  return text;
}

}  // namespace palvor

#endif  // PALVOR_FORMAT_BIT_VECTOR_H_
