// The packed input strings, all in memory: a comparison reads characters at any
// position of any input. Nothing changes once they are loaded, so that several
// merges can share them.

#ifndef PALVOR_TEXT_COLLECTION_H_
#define PALVOR_TEXT_COLLECTION_H_

#include <cstdint>
#include <vector>

#include "palvor/format/suffix.h"
#include "palvor/io/data_paths.h"
#include "palvor/io/files.h"
#include "palvor/io/memory.h"
#include "palvor/text/packed_string.h"

namespace palvor {

class Collection {
 public:
  // Strings that somebody else keeps for as long as this is used. None may have
  // 2^31 bits or more.
  explicit Collection(std::vector<PackedString> strings)
      : strings_(std::move(strings)) {}

  // Loads every input's .stbin file, by reading it or by mapping it. `bits` are
  // the strings' lengths. Fails if a file cannot be opened, is too short or,
  // when read, has no zero trailer, and for a length of 2^31 bits or more.
  // Bytes after the trailer are ignored. What is read is counted as memory,
  // what is mapped is not.
  Collection(const DataPaths& paths, const std::vector<uint32_t>& bits,
             bool map, MemoryCount& memory, IoTime& time);

  Collection(const Collection&) = delete;
  Collection& operator=(const Collection&) = delete;
  ~Collection();

  uint32_t inputs() const { return static_cast<uint32_t>(strings_.size()); }
  const PackedString& operator[](uint32_t input) const {
    return strings_[input];
  }

  const PackedString* data() const { return strings_.data(); }

  // A suffix's length in bits. Its input must be one of these.
  int remainingBits(const Suffix& suffix) const {
    return static_cast<int>(strings_[inputNumber(suffix)].bits -
                            2 * suffix.pos);
  }

  // Whether a suffix's prefix words say more than there is of it.
  bool prefixGoesOn(const Suffix& suffix) const {
    const int bits = remainingBits(suffix);
    if (bits >= 64) return false;
    const uint64_t words =
        static_cast<uint64_t>(suffix.prefix0) << 32 | suffix.prefix1;
    return words << bits != 0;
  }

 private:
  struct Mapping {
    void* address;
    uint64_t bytes;
  };

  const uint32_t* readString(const File& file, const std::string& path,
                             int input, int64_t words, MemoryCount& memory,
                             IoTime& time);
  const uint32_t* mapString(const File& file, const std::string& path,
                            int input, int64_t words);

  std::vector<PackedString> strings_;
  std::vector<Block<uint32_t>> blocks_;
  std::vector<Mapping> mappings_;
};

}  // namespace palvor

#endif  // PALVOR_TEXT_COLLECTION_H_
