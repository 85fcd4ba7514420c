// What one suffix array is made of: its input strings, packed, one after the
// other.
//
// A character takes two bits, sixteen make a word, the first of them in its top
// bits, as in .stbin files. Every input begins with a word of its own, and
// kGapWords words of zeros or more follow its last one, so that 64 bits can be
// read from any of its characters on. A *position* counts characters over the
// whole text: 16 for each word, gaps included.

#ifndef PALVOR_KIT_PREPARE_PSA_TEXT_H_
#define PALVOR_KIT_PREPARE_PSA_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kit/packer.h"

namespace kit {

constexpr size_t kGapWords = 2;

struct InputString {
  size_t begin;          // position of its first character
  size_t length;         // in characters, at least 1
  std::string record;    // name of the record that it is, or is a piece of
  uint64_t offset;       // in the record, from 0, of the piece that it is
  bool reverse = false;  // it is the piece's reverse complement
};

struct PsaText {
  int number = 0;           // of the suffix array, from 0
  uint32_t firstInput = 0;  // number of its first input, over all arrays
  std::string file;         // where the inputs come from, as the user named it
  std::vector<uint32_t> words;      // the inputs and their gaps; below 2^28
  std::vector<InputString> inputs;  // at least one; in the order of the text
  size_t characters = 0;            // of all inputs: so many suffixes
};

// The 32 characters from a position on, the first in the top bits; zero bits
// past the end of the input. The position must be inside an input.
inline uint64_t charactersAt(const uint32_t* words, size_t position) {
  const uint32_t* word = words + position / kCharactersPerWord;
  const auto shift = 2 * (position % kCharactersPerWord);
  const uint64_t first = static_cast<uint64_t>(word[0]) << 32 | word[1];
  return first << shift | static_cast<uint64_t>(word[2]) << shift >> 32;
}

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_PSA_TEXT_H_
