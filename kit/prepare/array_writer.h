// The files of one suffix array: its records and, if wanted, its LCP entries.

#ifndef PALVOR_KIT_PREPARE_ARRAY_WRITER_H_
#define PALVOR_KIT_PREPARE_ARRAY_WRITER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/ordered_checksum.h"
#include "kit/output_file.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/input_finder.h"
#include "kit/prepare/manifest.h"
#include "kit/prepare/psa_text.h"
#include "kit/records.h"

namespace kit {

// What goes into the files of an array.
struct ArrayFormat {
  bool withLcp = false;     // write LCP entries too
  bool zeroOrigin = false;  // number the inputs from 0 inside each array
};

// Records of consecutive ranks, on their way to the files.
struct RecordBlock {
  size_t rank = 0;  // of the first
  std::vector<Suffix> records;
  std::vector<LcpEntry> entries;  // as many, or none
  uint32_t lastRest = 0;          // characters of the last suffix

  void begin(size_t firstRank) {
    rank = firstRank;
    records.clear();
    entries.clear();
  }
};

class ArrayWriter {
 public:
  // Creates the files. Throws std::system_error, which names the file, as all
  // functions that write. The text and the finder must outlive the writer.
  ArrayWriter(const DataFolder& folder, const PsaText& psa,
              const InputFinder& finder, const ArrayFormat& format);

  // Appends a suffix to a block.
  //   characters  the first 32 (charactersAt)
  //   bits        shared with the one before, whose characters are
  //               block.lastRest; may be more than either has
  // Throws std::runtime_error if an LCP that is wanted does not fit an entry.
  void append(RecordBlock& block, size_t position, uint64_t characters,
              uint64_t bits) const;

  // Writes a block to its place. Threads may do so side by side.
  void write(const RecordBlock& block);

  // All ranks will be written once more.
  void restart();

  // Gives the files their names, once all ranks are written, and returns what
  // is to be said of them in the manifest; sources and inputs are left out.
  std::vector<ManifestEntry> commit();

 private:
  const InputFinder& finder_;
  uint32_t origin_;  // number of the first input
  // A file with its checksum.
  struct File {
    File(const DataFolder& folder, int number, const std::string& kind);
    void write(uint64_t offset, const void* bytes, size_t size);
    ManifestEntry commit();

    std::string name;
    OutputFile file;
    OrderedChecksum checksum;
  };

  File records_;
  std::optional<File> entries_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_ARRAY_WRITER_H_
