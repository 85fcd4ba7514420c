// The inputs of a merged order: how long they are, and where they come from.

#ifndef PALVOR_KIT_ANSWERS_MERGED_INPUTS_H_
#define PALVOR_KIT_ANSWERS_MERGED_INPUTS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/input_table.h"

namespace kit {

class MergedInputs {
 public:
  // Reads <base>.stlengths and <base>.inputs.tsv, of the first `most` inputs
  // (0: all). Throws FileError if one is missing or they disagree: without its
  // table a folder has no names; and if some inputs only are there on both
  // strands.
  MergedInputs(const std::string& base, uint64_t most);

  // Path of the folder's files, as far as their kind.
  const std::string& base() const { return base_; }

  uint32_t count() const { return static_cast<uint32_t>(lengths_.size()); }

  // Characters of an input, of each, and of all: as many suffixes.
  uint32_t length(uint32_t input) const { return lengths_[input]; }
  const std::vector<uint32_t>& lengths() const { return lengths_; }
  uint64_t total() const { return total_; }

  const InputOrigin& origin(uint32_t input) const { return origins_[input]; }

  // The input that this one is the reverse complement of, which comes just
  // before it, or the input itself.
  uint32_t forwardOf(uint32_t input) const { return forwardOf_[input]; }

  // Whether each input is followed by its reverse complement, or is one.
  bool bothStrands() const { return bothStrands_; }

 private:
  std::string base_;
  std::vector<uint32_t> lengths_;
  std::vector<InputOrigin> origins_;
  std::vector<uint32_t> forwardOf_;
  uint64_t total_ = 0;
  bool bothStrands_ = false;
};

// Says on standard error, if that is so, that the inputs hold one strand only,
// and what that means for answers that compare genomes.
void warnOfOneStrand(const MergedInputs& inputs);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MERGED_INPUTS_H_
