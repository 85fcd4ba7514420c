// The files of a merged array, as palvor -a -l writes them, made by several:
// each writes at places of its own.

#ifndef PALVOR_KIT_MERGE_ARRAY_OUTPUT_H_
#define PALVOR_KIT_MERGE_ARRAY_OUTPUT_H_

#include <cstdint>
#include <string>

#include "kit/output_file.h"

namespace kit {

struct ArrayFiles {
  const OutputFile& suffixes;
  const OutputFile& entries;
};

class ArrayOutput {
 public:
  // For the files <output>.stpsa, .stlcp and .stdiv, of so many suffixes. Has
  // the room on the disk. All functions throw std::exception.
  ArrayOutput(const std::string& output, uint64_t suffixes);

  ArrayFiles files() const { return {suffixes_, entries_}; }

  // Gives the files their names, and removes what an earlier run has left:
  // trees, too, which would be taken for this run's.
  void commit();

 private:
  std::string output_;
  // Empty, and older than the array, as palvor leaves it.
  OutputFile dividers_;
  OutputFile suffixes_;
  OutputFile entries_;
};

// Removes the trees <output>_<t>.stree and their dividers, as far as they are
// there.
void removeTrees(const std::string& output);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_ARRAY_OUTPUT_H_
