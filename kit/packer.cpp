#include "kit/packer.h"

#include <bit>
#include <cstring>

#include "kit/psa_text.h"

namespace kit {
namespace {

static_assert(std::endian::native == std::endian::little);

// Eight characters as 16 bits, the first in the top ones.
uint32_t packEight(const char* characters) {
  uint64_t bytes;
  std::memcpy(&bytes, characters, sizeof bytes);
  bytes = __builtin_bswap64(bytes) >> 1;
  uint64_t codes = bytes & 0x0303030303030303u;
  codes ^= codes >> 1 & 0x0101010101010101u;
  codes = (codes | codes >> 6) & 0x000F000F000F000Fu;
  codes = (codes | codes >> 12) & 0x000000FF000000FFu;
  return static_cast<uint32_t>(codes | codes >> 24) & 0xFFFFu;
}

// Up to sixteen characters in the top bits of a word.
uint32_t packSome(std::string_view characters) {
  uint32_t word = 0;
  unsigned shift = 32;
  for (const char character : characters) {
    shift -= 2;
    word |= codeOf(character) << shift;
  }
  return word;
}

}  // namespace

void appendPacked(std::vector<uint32_t>& words, size_t length,
                  std::string_view characters) {
  const size_t used = length % kCharactersPerWord;
  const size_t old = words.size();
  words.resize(old - (used > 0 ? 1 : 0) +
               (used + characters.size() + kCharactersPerWord - 1) /
                   kCharactersPerWord);
  if (used > 0) {
    const size_t room = kCharactersPerWord - used;
    const std::string_view first = characters.substr(0, room);
    words[old - 1] |= packSome(first) >> (2 * used);
    characters.remove_prefix(first.size());
  }
  uint32_t* word = words.data() + old;
  while (characters.size() >= kCharactersPerWord) {
    *word++ =
        packEight(characters.data()) << 16 | packEight(characters.data() + 8);
    characters.remove_prefix(kCharactersPerWord);
  }
  if (!characters.empty()) *word = packSome(characters);
}

}  // namespace kit
