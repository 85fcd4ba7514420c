// One input string, two bits a character.

#ifndef PALVOR_KIT_PACKED_STRING_H_
#define PALVOR_KIT_PACKED_STRING_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kit/fault_log.h"

namespace kit {

class PackedString {
 public:
  PackedString() = default;

  // Reads a .stbin file of so many characters. Throws FileError if it cannot be
  // read or holds fewer.
  //   faults  told of a size, padding or trailer that is not as it should be;
  //           null: these do not matter
  PackedString(const std::string& path, uint64_t characters, FaultLog* faults);

  // A text over A, C, G and T.
  explicit PackedString(std::string_view text);

  // The 64 bits from a bit on, which must be one of the string or the bit past
  // its end; zero past the end.
  uint64_t slice(uint64_t bit) const {
    const uint32_t* words = words_.data() + bit / 32;
    const uint64_t first = uint64_t{words[0]} << 32 | words[1];
    const unsigned shift = bit % 32;
    return shift == 0 ? first : first << shift | words[2] >> (32 - shift);
  }

 private:
  std::vector<uint32_t> words_;  // data words and three zeros
};

}  // namespace kit

#endif  // PALVOR_KIT_PACKED_STRING_H_
