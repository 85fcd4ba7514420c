// Stretches that are their own reverse complements, such as GAATTC.

#ifndef PALVOR_KIT_ANSWERS_PALINDROMES_H_
#define PALVOR_KIT_ANSWERS_PALINDROMES_H_

#include <algorithm>
#include <cstdint>
#include <vector>

#include "kit/answers/merged_inputs.h"
#include "kit/records.h"

namespace kit {

// The 32 characters of a word, reversed and complemented.
inline uint64_t reverseComplement(uint64_t word) {
  word = __builtin_bswap64(~word);
  word = (word & 0x0F0F0F0F0F0F0F0F) << 4 | (word >> 4 & 0x0F0F0F0F0F0F0F0F);
  return (word & 0x3333333333333333) << 2 | (word >> 2 & 0x3333333333333333);
}

// Tells which prefixes of a suffix are palindromes. Those of 32 characters and
// less are seen in its prefix words; longer ones, which are rare, are looked
// for in the strings beforehand. Memory: 8 bytes for each place in the strings
// around which there is a longer one, and a bit for 256 characters.
class Palindromes {
 public:
  // Looks for palindromes of more than 32 characters, and of at most `longest`,
  // in all inputs, which must be pairs of both strands and outlive this.
  // Throws FileError if a string cannot be read.
  Palindromes(const MergedInputs& inputs, uint32_t longest);

  // Calls found(n) for each n, from < n <= to, for which the first n characters
  // of a suffix are a palindrome. It must have `to` characters, and `to` must
  // be at most `longest`.
  template <typename Found>
  void eachPrefix(const Suffix& suffix, uint32_t from, uint32_t to,
                  Found found) const {
    const uint32_t first = from + 2 - from % 2;  // even
    if (first <= std::min(to, kInWords)) {
      const uint64_t word = prefixBits(suffix);
      const uint64_t reverse = reverseComplement(word);
      for (uint32_t n = first; n <= std::min(to, kInWords); n += 2) {
        const unsigned unused = 64 - 2 * n;
        if ((word ^ reverse << unused) >> unused == 0) found(n);
      }
    }
    if (to <= kInWords || !mayHaveLong(suffix)) return;
    const std::vector<Center>& centers = centers_[inputNumber(suffix)];
    const uint32_t begin = suffix.pos + std::max(from, kInWords) / 2 + 1;
    for (auto center = std::lower_bound(
             centers.begin(), centers.end(), begin,
             [](const Center&c, uint32_t pos) { return c.pos < pos; });
         center != centers.end() && center->pos <= suffix.pos + to / 2;
         ++center) {
      const uint32_t half = center->pos - suffix.pos;
      if (half <= center->arm) found(2 * half);
    }
  }

 private:
  static constexpr uint32_t kInWords = 32;  // characters that the prefix has
  static constexpr uint32_t kBlock = 256;   // characters of a string

  // A place that a palindrome is around.
  struct Center {
    uint32_t pos;  // of the first character of its right half
    uint32_t arm;  // characters of half of the longest one
  };

  bool mayHaveLong(const Suffix& suffix) const {
    const uint64_t block =
        blockBegins_[inputNumber(suffix)] + suffix.pos / kBlock;
    return beginsInBlock_[block];
  }

  void look(uint32_t input);
  void markBlocks(uint32_t input);

  const MergedInputs& inputs_;
  uint32_t longestArm_;
  std::vector<std::vector<Center>> centers_;  // of each input, in order
  std::vector<uint64_t> blockBegins_;         // the first block of each input
  std::vector<bool> beginsInBlock_;  // a palindrome of more than 32 characters
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PALINDROMES_H_
