// Sequence files in, a data folder out.

#ifndef PALVOR_KIT_PREPARE_PREPARE_H_
#define PALVOR_KIT_PREPARE_PREPARE_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "kit/prepare/array_writer.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/psa_source.h"
#include "kit/progress.h"

namespace kit {

struct PrepareOptions {
  std::string directory;  // in which the data folder is made
  std::string prefix;
  std::vector<std::string> files;
  ReadingRules rules;
  ArrayFormat format;
  bool force = false;       // replace all files of the prefix
  bool ownFolder = false;   // so that what can't be resumed may be replaced
  bool forceSpace = false;  // go on where the disk seems too small
  int jobs = 1;             // threads, 1 or more
  uint64_t memory = std::numeric_limits<uint64_t>::max();  // bytes to do with
};

// A finished folder of the same prefix and made by the same rules, whose inputs
// come first, and the files that it was made of.
struct PreparedBefore {
  DataFolder folder;
  std::vector<std::string> files;
};

struct PrepareResult {
  ReadingSummary summary;
  size_t resumed = 0;  // suffix arrays that were not made again
};

// Makes the data folder, or goes on with one that an interrupted run has left,
// without a word. `characters`: to come, about, for the progress; 0: unknown.
// Throws std::exception, which names the file; a folder without a finished
// suffix array is taken away then.
PrepareResult prepareFolder(const PrepareOptions& options, uint64_t characters,
                            const ProgressStyle& progress = {},
                            const PreparedBefore* before = nullptr);

// Says on standard error what was read, and what was done about it.
void sayWhatWasRead(const PrepareResult& result, size_t files);

// Makes the data folder, or goes on with one that an interrupted run has left.
// Says on standard error what it will need and what it did, and on standard
// output the command that merges the folder. Throws std::exception.
void prepare(const PrepareOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_PREPARE_H_
