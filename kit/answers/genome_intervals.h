// The LCP intervals of a merged order with the number of genomes that each has.
//
// That number is counted as the intervals close: it is that of the suffixes,
// less one for each pair of suffixes of the same genome that follow each other
// among those of that genome and whose smallest common interval is this one or
// one inside it (Hui, Combinatorial Pattern Matching 1992).

#ifndef PALVOR_KIT_ANSWERS_GENOME_INTERVALS_H_
#define PALVOR_KIT_ANSWERS_GENOME_INTERVALS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kit {

// Suffixes that stand side by side and begin with the same characters.
struct GenomeInterval {
  uint64_t begin;    // the first one, counted from 0
  uint64_t end;      // one past the last one
  uint64_t genomes;  // that have one of them
  uint32_t outer;    // characters that those of the interval around share
  uint32_t depth;    // that these share: more
};

// Calls visitor.close(interval) for each interval, inner ones first. The last
// suffix taken is one of its suffixes.
template <typename Visitor>
class GenomeIntervals {
 public:
  // Depths above `most` are taken for `most`, and those below `least` for
  // `least`, that of the whole order, which is never closed.
  GenomeIntervals(Visitor& visitor, uint32_t genomes, uint32_t least,
                  uint32_t most)
      : visitor_(visitor), least_(least), most_(most), lastOf_(genomes) {
    open_.push_back({least, 0, 0});
  }

  // Suffixes taken.
  uint64_t taken() const { return taken_; }

  // The depth that is taken for one.
  uint32_t clamped(uint32_t depth) const {
    return std::clamp(depth, least_, most_);
  }

  // Takes the next suffix, of a genome, which shares so many characters with
  // the one before it; clamped, and `least` for the first one.
  void take(uint32_t common, uint32_t genome) {
    if (common > open_.back().depth) {
      open_.push_back({common, taken_ - 1, 0});
    } else if (common < open_.back().depth) {
      close(common);
    }
    uint64_t& last = lastOf_[genome];
    if (last != 0) open_[smallestWith(last - 1)].repeats++;
    last = ++taken_;
  }

  // The depth of the smallest interval that the last suffix taken and one of a
  // genome are in; `least` if there is none of that genome.
  uint32_t depthWithLast(uint32_t genome) const {
    const uint64_t last = lastOf_[genome];
    return last == 0 ? least_ : open_[smallestWith(last - 1)].depth;
  }

  // To be called once, when all suffixes were taken.
  void finish() {
    if (open_.back().depth > least_) close(least_);
  }

 private:
  struct Open {
    uint32_t depth;
    uint64_t begin;
    uint64_t repeats;  // pairs of suffixes, as above
  };

  // Closes the intervals that are deeper than that.
  void close(uint32_t common) {
    Open inner = open_.back();
    do {
      open_.pop_back();
      const uint32_t outer = std::max(common, open_.back().depth);
      const uint64_t genomes = taken_ - inner.begin - inner.repeats;
      visitor_.close({inner.begin, taken_, genomes, outer, inner.depth});
      if (outer == open_.back().depth) {
        open_.back().repeats += inner.repeats;
      } else {
        open_.push_back({outer, inner.begin, inner.repeats});
      }
      inner = open_.back();
    } while (inner.depth > common);
  }

  // Which of the open ones.
  size_t smallestWith(uint64_t suffix) const {
    size_t found = 0;
    for (size_t size = open_.size(); size > 1;) {
      const size_t half = size / 2;
      if (open_[found + half].begin <= suffix) found += half;
      size -= half;
    }
    return found;
  }

  Visitor& visitor_;
  uint32_t least_, most_;
  uint64_t taken_ = 0;
  std::vector<Open> open_;        // each inside the one before it
  std::vector<uint64_t> lastOf_;  // 1 + last suffix of each genome; 0: none
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_GENOME_INTERVALS_H_
