// Strings of characters, packed, and random ones that descend from each other.

#ifndef PALVOR_TESTS_SUPPORT_STRAINS_H_
#define PALVOR_TESTS_SUPPORT_STRAINS_H_

#include <algorithm>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "palvor/text/packed_string.h"
#include "palvor/text/stretch_builder.h"

namespace palvor {

inline constexpr char kCharacters[] = "ACGT";

// Strings as text and packed.
class PackedTexts {
 public:
  explicit PackedTexts(std::vector<std::string> texts)
      : texts_(std::move(texts)) {
    for (const std::string& text : texts_) {
      // Not a word more than there must be, so that a sanitizer sees any read
      // behind the trailer.
      std::vector<uint32_t> words((text.size() + 15) / 16 + 1);
      for (size_t i = 0; i < text.size(); i++) {
        words[i / 16] |= codeOf(text[i]) << (30 - 2 * (i % 16));
      }
      words_.push_back(std::move(words));
      strings_.push_back(
          {words_.back().data(), static_cast<uint32_t>(2 * text.size())});
    }
  }
  PackedTexts(const PackedTexts&) = delete;

  const std::vector<std::string>& texts() const { return texts_; }
  const std::vector<PackedString>& strings() const { return strings_; }

  Stretches stretches() const {
    return buildStretches(strings_, std::vector<bool>(strings_.size(), true));
  }

  static uint32_t codeOf(char character) {
    return static_cast<uint32_t>(std::string(kCharacters).find(character));
  }

 private:
  std::vector<std::string> texts_;
  std::vector<std::vector<uint32_t>> words_;
  std::vector<PackedString> strings_;
};

class Genomes {
 public:
  explicit Genomes(unsigned seed) : random_(seed) {}

  size_t below(size_t bound) { return random_() % bound; }

  std::string unrelated(size_t length, size_t alphabet = 4) {
    std::string text;
    while (text.size() < length) text += kCharacters[below(alphabet)];
    return text;
  }

  // A copy with some edits: substitutions, insertions, deletions, copies of
  // pieces to elsewhere, inverted pieces.
  std::string descendant(std::string text, size_t edits) {
    for (size_t e = 0; e < edits && !text.empty(); e++) {
      const size_t at = below(text.size());
      const size_t length = 1 + below(below(4) == 0 ? 90 : 3);
      switch (below(8)) {
        case 0:
          text.insert(at, unrelated(length));
          break;
        case 1:
          text.erase(at, length);
          break;
        case 2:
          text.insert(at, text.substr(below(text.size()), 40 + 9 * length));
          break;
        case 3: {
          std::string piece = text.substr(at, 50 + length);
          std::ranges::reverse(piece);
          text.replace(at, piece.size(), piece);
          break;
        }
        default:
          text[at] = kCharacters[below(4)];
      }
    }
    return text;
  }

 private:
  std::mt19937 random_;
};

}  // namespace palvor

#endif  // PALVOR_TESTS_SUPPORT_STRAINS_H_
