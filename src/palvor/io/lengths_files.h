// The three lengths files of a data folder.
//
// Each is an array of unsigned 32-bit integers, little-endian, one per entry
// and nothing else:
//   .stlengths   one entry per input: its length, in characters
//   .stblengths  one entry per input: its packed string's length, in bits
//   .stplengths  one entry per partition: the number of inputs it covers

#ifndef PALVOR_IO_LENGTHS_FILES_H_
#define PALVOR_IO_LENGTHS_FILES_H_

#include <cstdint>
#include <vector>

#include "palvor/io/data_paths.h"

namespace palvor {

struct Lengths {
  std::vector<uint32_t> characters;  // per input, as the file gives it
  std::vector<uint32_t> bits;        // per input, of its packed string
  std::vector<uint32_t> partitions;  // per partition; empty without the file
  // Whether an entry that was left out, and has others behind it, is not 0.
  bool leftPartitionOut = false;

  int inputs() const { return static_cast<int>(characters.size()); }

  // One stream for each partition, or, without partitions, input.
  int streams() const {
    return partitions.empty() ? inputs() : static_cast<int>(partitions.size());
  }
};

// Reads the lengths files. Of the inputs, the first `mostInputs` are taken, all
// if that is 0; it must be 0 where there is a partitions file. A remainder of
// fewer than four bytes is ignored. As many partitions' entries as there are
// inputs are taken, those beyond are left out and 0. Fails if a file cannot be
// read or is too short; a partitions file that is missing or out of reach means
// that there are none.
Lengths readLengths(const DataPaths& paths, int mostInputs);

}  // namespace palvor

#endif  // PALVOR_IO_LENGTHS_FILES_H_
