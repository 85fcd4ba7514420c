#include "kit/packer.h"

#include <bit>
#include <cstring>

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

// The sixteen characters of a word, the last one first, each replaced by the
// one that it pairs with.
uint32_t reverseComplement(uint32_t word) {
  word = (word >> 2 & 0x33333333u) | (word & 0x33333333u) << 2;
  word = (word >> 4 & 0x0F0F0F0Fu) | (word & 0x0F0F0F0Fu) << 4;
  return ~__builtin_bswap32(word);
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

void appendReverseComplement(std::vector<uint32_t>& words, size_t first,
                             size_t length) {
  const size_t count = (length + kCharactersPerWord - 1) / kCharactersPerWord;
  // The zeros that fill up the last word come to the front, and are left out.
  const size_t filling = 2 * (kCharactersPerWord * count - length);
  const size_t begin = words.size();
  words.resize(begin + count);
  uint32_t next = reverseComplement(words[first + count - 1]);
  for (size_t i = 0; i < count; i++) {
    const uint32_t word = next;
    next = i + 1 < count ? reverseComplement(words[first + count - 2 - i]) : 0;
    const uint64_t both = static_cast<uint64_t>(word) << 32 | next;
    words[begin + i] = static_cast<uint32_t>(both << filling >> 32);
  }
}

}  // namespace kit
