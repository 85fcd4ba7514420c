// What one suffix array is made of: its input strings, joined into one text.

#ifndef PALVOR_KIT_PSA_TEXT_H_
#define PALVOR_KIT_PSA_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kit {

// Ends every input in the text; sorts before A, C, G and T.
constexpr char kSeparator = '$';

// The code of A, C, G or T: 0 to 3.
inline unsigned codeOf(char character) {
  const unsigned bits = (static_cast<unsigned char>(character) >> 1) & 3;
  return bits ^ (bits >> 1);
}

struct InputString {
  size_t begin;        // of the input in the text
  size_t length;       // in characters
  std::string record;  // name of the record that it is, or is a piece of
  uint64_t offset;     // of its first character in the record, from 0
};

struct PsaText {
  int number = 0;           // of the suffix array, from 0
  uint32_t firstInput = 0;  // number of its first input, over all arrays
  std::string file;         // where the inputs come from, as the user named it
  std::string text;         // the inputs, each with a separator after it
  std::vector<InputString> inputs;  // at least one; in the order of the text
};

}  // namespace kit

#endif  // PALVOR_KIT_PSA_TEXT_H_
