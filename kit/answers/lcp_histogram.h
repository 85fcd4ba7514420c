// How long the common prefixes of neighbouring suffixes are, in all of a merged
// order.

#ifndef PALVOR_KIT_ANSWERS_LCP_HISTOGRAM_H_
#define PALVOR_KIT_ANSWERS_LCP_HISTOGRAM_H_

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/records.h"

namespace kit {

class LcpHistogram {
 public:
  // Pairs of neighbours that share so many characters, or more, but fewer than
  // the next bin says.
  struct Bin {
    uint32_t from;
    uint64_t pairs;
  };

  // Takes the next LCP entries of the merged order, the first of which
  // describes no pair.
  void take(std::span<const LcpEntry> entries);

  // Two bins for each doubling (0, 1, 2, 3, 4, 6, 8, 12, 16, ...), up to the
  // one that holds the longest.
  std::vector<Bin> bins() const;

  uint64_t pairs() const { return pairs_; }
  uint32_t longest() const { return longest_; }  // characters
  double mean() const;                           // 0 if there are no pairs

 private:
  static constexpr unsigned kBins = 64;

  static unsigned binOf(uint32_t characters);
  static uint32_t firstOf(unsigned bin);

  std::array<uint64_t, kBins> counts_ = {};
  bool begun_ = false;  // an entry was taken
  uint64_t pairs_ = 0;
  uint64_t sum_ = 0;
  uint32_t longest_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_LCP_HISTOGRAM_H_
