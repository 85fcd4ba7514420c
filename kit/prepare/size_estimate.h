// How much sequence files hold, told from their sizes before they are read.

#ifndef PALVOR_KIT_PREPARE_SIZE_ESTIMATE_H_
#define PALVOR_KIT_PREPARE_SIZE_ESTIMATE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kit {

// Characters of the files' sequences, about.
struct SizeEstimate {
  uint64_t all = 0;
  uint64_t longest = 0;  // of one file
};

// Reads the first block of a few files to see how many characters come of a
// stored byte. Nothing if a file is no regular file, which would have to be
// read, or if all together are too small to be worth it; faults in the files
// are left to be found where they are read.
std::optional<SizeEstimate> estimateSize(const std::vector<std::string>& files);

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_SIZE_ESTIMATE_H_
