// The suffix arrays that are merged, as files.

#ifndef PALVOR_STREAM_STREAM_FILES_H_
#define PALVOR_STREAM_STREAM_FILES_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "palvor/io/data_paths.h"
#include "palvor/io/lengths_files.h"

namespace palvor {

struct StreamFiles {
  // `zeroOrigin`: every array numbers its inputs from zero.
  StreamFiles(DataPaths dataPaths, const Lengths& lengths, bool zeroOrigin)
      : paths(std::move(dataPaths)), hasOrigins(zeroOrigin) {
    const auto count = static_cast<size_t>(lengths.streams());
    for (size_t k = 0; k < count; k++) {
      firstInputs.push_back(firstInputs.back() + (lengths.partitions.empty()
                                                      ? 1
                                                      : lengths.partitions[k]));
    }
  }

  int count() const { return static_cast<int>(firstInputs.size()) - 1; }
  std::string path(int k) const { return paths.arrayFile(k); }

  // What is added to the word `input` of every record of stream k: 4 for each
  // input that lies before those that the array numbers from 0 on.
  uint32_t origin(int k) const {
    return hasOrigins ? 4 * firstInputs[static_cast<size_t>(k)] : 0;
  }

  DataPaths paths;
  bool hasOrigins;
  // Number of each stream's first input, as the partitions file says, and at
  // last of the one behind all. There may be fewer inputs.
  std::vector<uint32_t> firstInputs = {0};
};

}  // namespace palvor

#endif  // PALVOR_STREAM_STREAM_FILES_H_
