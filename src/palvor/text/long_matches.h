// Long matches between the input strings, remembered.
//
// Where two strains agree over a million characters, suffixes that begin in
// that match are compared a million times, each time over a match one character
// shorter; reading it anew every time would take quadratic time. So the
// comparison remembers what it found equal, and passes over it when it comes by
// again. A match is told by its two inputs, by how far they are shifted against
// each other, and by the block of the first input in which it was met:
//
//   input 3      ....CGATTACAGATTACAGATTACATT....     the same 22 characters,
//   input 8   ....AAGATTACAGATTACAGATTACAG....        3 positions further left
//
// The table is fixed, and a later match takes an earlier one's place: what is
// remembered costs or saves time, and changes no result.

#ifndef PALVOR_TEXT_LONG_MATCHES_H_
#define PALVOR_TEXT_LONG_MATCHES_H_

#include <cstdint>

#include "palvor/io/memory.h"

namespace palvor {

// A bit of an input's packed string.
struct StringBit {
  uint32_t input;
  uint32_t bit;
};

class LongMatches {
 public:
  LongMatches();

  // How many bits from two bits on are remembered to be equal; 0 if nothing is
  // known.
  uint32_t known(StringBit a, StringBit b) const;

  // Remembers that `bits` bits from two bits on are equal, of which the first
  // `read` had to be read. All of them must lie in both strings.
  void remember(StringBit a, StringBit b, uint32_t bits, uint32_t read);

 private:
  // Bits `from` to `to` - 1 of input a are those of input b, `shift` bits on.
  struct Match {
    uint32_t a;
    uint32_t b;
    int64_t shift;
    uint32_t from;
    uint32_t to;
  };

  Match& slotOf(uint32_t a, uint32_t b, int64_t shift, uint32_t block) const;

  Block<Match> matches_;  // an empty one has `from` = `to` = 0
};

}  // namespace palvor

#endif  // PALVOR_TEXT_LONG_MATCHES_H_
