// The order of what comes behind inherited differences.
//
// Strains inherit differences: several strings leave the same text at the same
// position with the same symbol, and go on alike. What stands behind the
// difference in each of them is put into order once, beforehand, and each gets
// its rank, with the common prefixes of those next to each other in order: then
// two suffixes that share the difference are told apart by their ranks,
// however many more differences they share.
//
// What stands behind a difference begins with a stretch, too: most often one
// with the same anchor for all of them, so that its second key orders them, and
// the ranks of the next difference, where they share that. So differences are
// ranked from the end of the text to its start, and each rank costs a few looks
// at stretches. Where anchors differ, stretches are followed and strings read,
// within limits; differences that need more, as in tandem repeats, are left
// without ranks.

#ifndef PALVOR_TEXT_STRETCH_RANKS_H_
#define PALVOR_TEXT_STRETCH_RANKS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "palvor/io/huge_pages.h"
#include "palvor/text/axis.h"
#include "palvor/text/stretch.h"

namespace palvor {

class StretchRanks {
 public:
  StretchRanks() = default;

  // Ranks all differences of the stretches, which lie in ascending order and
  // are followed by an end mark that starts at Axis::kNowhere, and writes the
  // ranks into their partings. There must be fewer than kRanks stretches that
  // do not end with their string.
  StretchRanks(const Axis& axis, std::span<Stretch> stretches);

  // Whether stretches with this rank that share a difference are followed by
  // the same text up to the ends of their strings. If not, nothing is known of
  // what follows it.
  bool known(uint32_t rank) const { return common_[rank] != kUnknown; }

  // The common prefix, in bits, of what stands behind a shared difference in
  // two stretches with different ranks.
  uint32_t commonBits(uint32_t a, uint32_t b) const;

  // Asks early for what commonBits reads of a rank and the one before. An
  // address that is nobody's would take long.
  void ask(uint32_t rank) const {
    if (rank < common_.size()) __builtin_prefetch(common_.data() + rank, 0, 2);
  }

  // What it takes, in bytes.
  size_t memory() const {
    return sizeof(uint32_t) * (common_.size() + least_.size());
  }

 private:
  friend class StretchRanker;

  static constexpr uint32_t kUnknown = UINT32_MAX;
  static constexpr uint32_t kBlock = 64;

  // Per rank, the common prefix with the one before, if they share a
  // difference; the largest number for one that is equal to the one before.
  HugeTable<uint32_t> common_;
  std::vector<uint32_t> least_;  // of kBlock of these that share one
};

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_RANKS_H_
