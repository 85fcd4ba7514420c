// The input strings of a data folder, tested as they are loaded, for checks
// that must not lean on the merge's own code.

#ifndef PALVOR_KIT_CHECKED_STRINGS_H_
#define PALVOR_KIT_CHECKED_STRINGS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/fault_log.h"

namespace kit {

// A suffix by what it is: where it begins, in characters.
struct Place {
  uint32_t input;
  uint64_t pos;
};

class CheckedStrings {
 public:
  // Loads the strings of <base>.stlengths, .stblengths and _<i>.stbin. Reports
  // lengths past the limit, sizes that disagree, and trailers and paddings that
  // are not zero. Throws if strings are missing, since nothing can be checked
  // without them.
  CheckedStrings(const std::string& base, FaultLog& faults);

  uint32_t count() const { return static_cast<uint32_t>(lengths_.size()); }
  uint64_t length(uint32_t input) const { return lengths_[input]; }
  uint64_t total() const { return total_; }

  bool has(const Place& place) const {
    return place.input < count() && place.pos < lengths_[place.input];
  }

  // Bits of the suffix at a place that is there.
  uint64_t restBits(const Place& place) const {
    return 2 * (lengths_[place.input] - place.pos);
  }

  // The 64 bits of an input from a bit on, zero past its end.
  uint64_t slice(uint32_t input, uint64_t bit) const {
    const uint32_t* words = words_[input].data() + bit / 32;
    const uint64_t first = uint64_t{words[0]} << 32 | words[1];
    const unsigned shift = bit % 32;
    return shift == 0 ? first : first << shift | words[2] >> (32 - shift);
  }

  // Index of a suffix among all: no two share a 64-bit word's worth of indexes
  // unless they are of the same input.
  uint64_t index(const Place& place) const {
    return starts_[place.input] + place.pos;
  }
  uint64_t indexes() const { return starts_.back(); }

 private:
  void load(const std::string& path, uint32_t input, FaultLog& faults);

  std::vector<uint32_t> lengths_;             // in characters
  std::vector<std::vector<uint32_t>> words_;  // data words and three zeros
  std::vector<uint64_t> starts_ = {0};        // of each input's indexes
  uint64_t total_ = 0;                        // characters of all inputs
};

}  // namespace kit

#endif  // PALVOR_KIT_CHECKED_STRINGS_H_
