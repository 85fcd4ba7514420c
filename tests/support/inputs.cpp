#include "support/inputs.h"

#include <algorithm>

#include "run/values.h"
#include "sources/strings.h"

namespace {

std::vector<std::string> inputs;
std::vector<std::vector<uint32_t>> packed;
std::vector<unsigned*> pointers;
std::vector<unsigned> bitLengths;

uint32_t codeOf(char character) {
  return static_cast<uint32_t>(std::string_view("ACGT").find(character));
}

}  // namespace

void useInputs(const std::vector<std::string>& texts) {
  inputs = texts;
  packed.clear();
  pointers.clear();
  bitLengths.clear();
  for (const std::string& text : texts) {
    packed.push_back(packedWords(text));
    bitLengths.push_back(static_cast<unsigned>(2 * text.size()));
  }
  for (std::vector<uint32_t>& words : packed) pointers.push_back(words.data());
  ninputs = static_cast<int>(texts.size());
  blengths = bitLengths.data();
  binaryString = pointers.data();
}

Suffix suffixAt(int input, size_t pos, unsigned flags) {
  const auto words = packedWords(
      std::string_view(inputs[static_cast<size_t>(input)]).substr(pos));
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
