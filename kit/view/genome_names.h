// Names and places for what is known by number.

#ifndef PALVOR_KIT_VIEW_GENOME_NAMES_H_
#define PALVOR_KIT_VIEW_GENOME_NAMES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/input_table.h"

namespace kit {

// Path of a data folder's files as far as their kind: DIR/PREFIX.ST/PREFIX.
// Throws FileError if the folder's name does not end with .ST.
std::string folderBase(const std::string& folder);

// The number in a file's name, <prefix>_<number><kind>, if there is one.
std::optional<uint64_t> numberInName(std::string_view path,
                                     std::string_view kind);

class GenomeNames {
 public:
  // Reads the table of inputs of a data folder, DIR/PREFIX.ST, or, if that is
  // empty, of the folder that `file` is in. Without a table nothing has a name.
  // Throws FileError if it cannot be read.
  GenomeNames(const std::string& dataFolder, const std::string& file);

  bool known() const { return !inputs_.empty(); }

  // The origin of an input, or null.
  const InputOrigin* find(uint64_t input) const;

  // Number of the first input of a suffix array; 0 if that is not known.
  uint64_t firstInput(uint64_t array) const;

 private:
  std::vector<InputOrigin> inputs_;
};

}  // namespace kit

#endif  // PALVOR_KIT_VIEW_GENOME_NAMES_H_
