// The LCP entry: a common prefix length and how the two suffixes part.
//
// A .stlcp file is an array of these 32-bit words, little-endian, one for each
// record of the .stpsa file beside it; entry m describes records m - 1 and m,
// and entry 0 describes no pair. The orderings of the merge keep the same
// words.
//
//   bits 31..1  length in bits of the longest common prefix, below 2^30
//   bit 0       firstbit: 1 if the suffixes differ before the end of the
//               shorter one, 0 if the shorter one ends first
//
// Example: ACGT... and ACGA... share 6 bits and then differ: entry 6 * 2 + 1.

#ifndef PALVOR_FORMAT_LCP_ENTRY_H_
#define PALVOR_FORMAT_LCP_ENTRY_H_

#include <cstdint>

namespace palvor {

using LcpEntry = uint32_t;

// The first length, in bits, that an entry can't hold.
constexpr int kLcpLimit = 1 << 30;

// Packs a length in bits (0 to kLcpLimit - 1) and a firstbit (0 or 1).
constexpr LcpEntry makeLcpEntry(int bits, int firstbit) {
  return static_cast<uint32_t>(bits) << 1 | static_cast<uint32_t>(firstbit);
}

// The length in bits. Negative for a word that is no valid entry (bit 31 set).
inline int lcpBits(LcpEntry entry) { return static_cast<int32_t>(entry) >> 1; }

// The whole characters of the prefix, of two bits each.
inline uint32_t lcpCharacters(LcpEntry entry) { return entry >> 2; }

inline int lcpFirstbit(LcpEntry entry) { return static_cast<int>(entry & 1); }

}  // namespace palvor

#endif  // PALVOR_FORMAT_LCP_ENTRY_H_
