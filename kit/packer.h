// Packs characters into words, two bits each.

#ifndef PALVOR_KIT_PACKER_H_
#define PALVOR_KIT_PACKER_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kit {

constexpr size_t kCharactersPerWord = 16;

// The code of A, C, G or T, in either case: 0 to 3.
inline unsigned codeOf(char character) {
  const unsigned bits = (static_cast<unsigned char>(character) >> 1) & 3;
  return bits ^ (bits >> 1);
}

// Appends characters, A, C, G and T only, to a packed string that is the end of
// `words` and has `length` characters so far: after a multiple of 16 a new word
// begins. What a last word does not use is zero.
void appendPacked(std::vector<uint32_t>& words, size_t length,
                  std::string_view characters);

// Appends the reverse complement of the packed string of `length` characters (1
// or more) that begins with word `first` of the same words.
void appendReverseComplement(std::vector<uint32_t>& words, size_t first,
                             size_t length);

}  // namespace kit

#endif  // PALVOR_KIT_PACKER_H_
