// Sequence files in, a data folder out.

#ifndef PALVOR_KIT_PREPARE_H_
#define PALVOR_KIT_PREPARE_H_

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "kit/array_writer.h"
#include "kit/psa_source.h"

namespace kit {

struct PrepareOptions {
  std::string directory;  // in which the data folder is made
  std::string prefix;
  std::vector<std::string> files;
  ReadingRules rules;
  ArrayFormat format;
  bool force = false;       // replace all files of the prefix
  bool forceSpace = false;  // go on where the disk seems too small
  int jobs = 1;             // threads, 1 or more
  uint64_t memory = std::numeric_limits<uint64_t>::max();  // bytes to do with
};

// Makes the data folder, or goes on with one that an interrupted run has left.
// Says on standard error what it will need and what it did, and on standard
// output the command that merges the folder. Throws std::exception, which names
// the file; a folder without a finished suffix array is taken away then.
void prepare(const PrepareOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_H_
