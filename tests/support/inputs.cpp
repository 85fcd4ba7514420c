#include "support/inputs.h"

#include <algorithm>
#include <utility>

namespace {

uint32_t codeOf(char character) {
  return static_cast<uint32_t>(std::string_view("ACGT").find(character));
}

std::vector<std::vector<uint32_t>> packedTexts(
    const std::vector<std::string>& texts) {
  std::vector<std::vector<uint32_t>> packed;
  for (const std::string& text : texts) packed.push_back(packedWords(text));
  return packed;
}

}  // namespace

InMemory::InMemory(std::vector<std::string> texts)
    : texts_(std::move(texts)),
      packed_(packedTexts(texts_)),
      text_(strings()) {}

std::vector<palvor::PackedString> InMemory::strings() const {
  std::vector<palvor::PackedString> strings;
  for (size_t i = 0; i < texts_.size(); i++) {
    strings.push_back(
        {packed_[i].data(), static_cast<uint32_t>(2 * texts_[i].size())});
  }
  return strings;
}

palvor::Suffix InMemory::suffixAt(size_t input, size_t pos,
                                  unsigned flags) const {
  const auto words = packedWords(std::string_view(texts_[input]).substr(pos));
  return {static_cast<uint32_t>(input) << 2 | flags, static_cast<uint32_t>(pos),
          words[0], words.size() > 2 ? words[1] : 0};
}

std::string bitsOf(std::string_view text) {
  std::string bits;
  for (const char character : text) {
    bits += (codeOf(character) & 2) != 0 ? '1' : '0';
    bits += (codeOf(character) & 1) != 0 ? '1' : '0';
  }
  return bits;
}

std::vector<uint32_t> packedWords(std::string_view text) {
  std::vector<uint32_t> words((text.size() + 15) / 16 + 1, 0);
  for (size_t i = 0; i < text.size(); i++) {
    words[i / 16] |= codeOf(text[i]) << (30 - 2 * (i % 16));
  }
  return words;
}

std::vector<std::string> textsUpTo(size_t longest,
                                   const std::string& alphabet) {
  std::vector<std::string> texts = {""};
  for (size_t i = 0; i < texts.size(); i++) {
    const std::string text = texts[i];
    if (text.size() == longest) break;
    for (const char character : alphabet) texts.push_back(text + character);
  }
  return texts;
}

uint32_t slowEntry(std::string_view a, std::string_view b) {
  const size_t shorter = std::min(a.size(), b.size());
  size_t same = 0;
  while (same < shorter && a[same] == b[same]) same++;
  if (same == shorter) return static_cast<uint32_t>(2 * same) << 1;
  const bool firstBit = (codeOf(a[same]) ^ codeOf(b[same])) < 2;
  return static_cast<uint32_t>(2 * same + (firstBit ? 1 : 0)) << 1 | 1;
}
