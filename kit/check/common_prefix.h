// How much two suffixes share, at a cost that does not grow with how often long
// matches are met again.
//
// Suffixes in order keep meeting the same matches: where two inputs agree over
// a million characters, a million pairs of neighbours do, each one character
// less. So matches of some length are remembered, by the two inputs, by how far
// they are shifted against each other, and by the block of the first input in
// which they were met; what a match is known to cover is not read again.

#ifndef PALVOR_KIT_CHECK_COMMON_PREFIX_H_
#define PALVOR_KIT_CHECK_COMMON_PREFIX_H_

#include <cstdint>
#include <vector>

#include "kit/check/checked_strings.h"

namespace kit {

class CommonPrefix {
 public:
  explicit CommonPrefix(const CheckedStrings& strings);

  // Bits that the suffixes at two places share; both places must be there.
  uint64_t bits(const Place& a, const Place& b);

 private:
  // Bits [from, to) of input a match those of input b, `shift` bits on.
  struct Match {
    uint32_t a = 0;
    uint32_t b = 0;
    int64_t shift = 0;
    uint64_t from = 0;
    uint64_t to = 0;
  };

  void remember(const Match& match, uint64_t readTo);
  Match& slot(uint32_t a, uint32_t b, int64_t shift, uint64_t bit);

  const CheckedStrings& strings_;
  std::vector<Match> matches_;
};

}  // namespace kit

#endif  // PALVOR_KIT_CHECK_COMMON_PREFIX_H_
