// The input strings of a data folder, tested as they are loaded, for checks
// that must not lean on the merge's own code.

#ifndef PALVOR_KIT_CHECK_CHECKED_STRINGS_H_
#define PALVOR_KIT_CHECK_CHECKED_STRINGS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/fault_log.h"
#include "kit/packed_string.h"

namespace kit {

// A suffix by what it is: where it begins, in characters.
struct Place {
  uint32_t input;
  uint64_t pos;
};

class CheckedStrings {
 public:
  // Loads the strings of <base>.stlengths, .stblengths and _<i>.stbin, of the
  // first `most` inputs at most. Reports lengths past the limit, sizes that
  // disagree, and trailers and paddings that are not zero. Throws FileError if
  // strings are missing, since nothing can be checked without them.
  CheckedStrings(const std::string& base, uint64_t most, FaultLog& faults);

  // Inputs that are loaded, and all those that the folder has.
  uint32_t count() const { return static_cast<uint32_t>(lengths_.size()); }
  uint64_t countInFolder() const { return countInFolder_; }

  uint64_t length(uint32_t input) const { return lengths_[input]; }
  uint64_t total() const { return total_; }

  // Characters of inputs `from` to `to` - 1: as many suffixes.
  uint64_t total(uint32_t from, uint32_t to) const;

  bool has(const Place& place) const {
    return place.input < count() && place.pos < lengths_[place.input];
  }

  // Bits of the suffix at a place that is there.
  uint64_t restBits(const Place& place) const {
    return 2 * (lengths_[place.input] - place.pos);
  }

  // The 64 bits of an input from a bit on, zero past its end.
  uint64_t slice(uint32_t input, uint64_t bit) const {
    return strings_[input].slice(bit);
  }

  // Index of a suffix among all: no two share a 64-bit word's worth of indexes
  // unless they are of the same input.
  uint64_t index(const Place& place) const {
    return starts_[place.input] + place.pos;
  }
  uint64_t indexes() const { return starts_.back(); }

 private:
  std::vector<uint32_t> lengths_;  // in characters
  std::vector<PackedString> strings_;
  std::vector<uint64_t> starts_ = {0};  // of each input's indexes
  uint64_t total_ = 0;                  // characters of all inputs
  uint64_t countInFolder_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_CHECKED_STRINGS_H_
