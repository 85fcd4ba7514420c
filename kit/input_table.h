// Where the inputs of a data folder come from: its .inputs.tsv.

#ifndef PALVOR_KIT_INPUT_TABLE_H_
#define PALVOR_KIT_INPUT_TABLE_H_

#include <cstdint>
#include <string>
#include <vector>

namespace kit {

// An input is a stretch of a sequence, or that stretch's reverse complement.
struct InputOrigin {
  uint64_t array = 0;    // number of its suffix array
  std::string file;      // as prepare was given it
  std::string sequence;  // name of the record
  uint64_t offset = 0;   // of the stretch in the sequence, in characters from 0
  uint64_t length = 0;   // in characters
  bool reverse = false;  // it is the reverse complement

  // Where a character of the input stands in the sequence, from 0.
  uint64_t placeOf(uint64_t pos) const {
    return reverse ? offset + length - 1 - pos : offset + pos;
  }
};

// Reads the table; entry i is input i's. Throws FileError, which names the
// line, if it cannot be read or has other fields than it should. Tables without
// the column of strands are read too.
std::vector<InputOrigin> readInputTable(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_INPUT_TABLE_H_
