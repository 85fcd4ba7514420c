// What preparing will need, told from the sizes of the files before it begins.

#ifndef PALVOR_KIT_NEEDS_H_
#define PALVOR_KIT_NEEDS_H_

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

// Bytes that can be written to the disk that holds a folder, or will hold it
// once it is made; nothing if the system does not tell.
std::optional<uint64_t> freeSpace(const std::string& folder);

// "22 million", "1.3 million", "512 thousand", "37"
std::string roundNumber(uint64_t number);

// "360 MB", "1.3 GB", "2 KB"; rounded up.
std::string roundBytes(uint64_t bytes);

}  // namespace kit

#endif  // PALVOR_KIT_NEEDS_H_
