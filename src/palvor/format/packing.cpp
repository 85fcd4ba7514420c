#include "palvor/format/packing.h"

namespace palvor {
namespace {

// Where bits 2-1 of a character's byte stand in an index of `kPackedCodes`, for
// the first of four characters; the next ones stand two bits lower each.
unsigned fieldOf(char character) {
  return (static_cast<unsigned char>(character) >> 1) & 3;
}

}  // namespace

int packCharacters(unsigned* out, char* text, int n) {
  const int words = n >> 4;
  for (int w = 0; w < words; w++) {
    unsigned word = 0;
    for (int run = 0; run < 4; run++, text += 4) {
      const unsigned index = fieldOf(text[0]) << 6 | fieldOf(text[1]) << 4 |
                             fieldOf(text[2]) << 2 | fieldOf(text[3]);
      word = word << 8 | kPackedCodes[index];
    }
    out[w] = word;
  }
  return words;
}

}  // namespace palvor
