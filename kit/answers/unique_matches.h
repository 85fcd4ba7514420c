// Maximal unique matches of several genomes: substrings that occur once in each
// of them, on either strand, and can be extended on neither side.

#ifndef PALVOR_KIT_ANSWERS_UNIQUE_MATCHES_H_
#define PALVOR_KIT_ANSWERS_UNIQUE_MATCHES_H_

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "kit/answers/genome_intervals.h"
#include "kit/answers/genomes.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/occurrence.h"
#include "kit/records.h"

namespace kit {

struct UniqueMatch {
  uint64_t length;
  std::vector<Occurrence> occurrences;  // one in each genome that has it, in
                                        // order; the first one is forward
};

// Memory: a few suffixes for each genome.
class UniqueMatches {
 public:
  // Calls `take` with each match of at least `shortest` characters that at
  // least `fewest` genomes have, of the two directions in which it may be read
  // once. All must outlive this.
  UniqueMatches(const MergedInputs& inputs, const Genomes& genomes,
                MergedStrings& strings, uint32_t shortest, uint32_t fewest,
                std::function<void(const UniqueMatch&)> take);
  UniqueMatches(const UniqueMatches&) = delete;
  UniqueMatches& operator=(const UniqueMatches&) = delete;

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // To be called once, when all suffixes were taken.
  void finish() { intervals_.finish(); }

 private:
  friend class GenomeIntervals<UniqueMatches>;

  void close(const GenomeInterval& interval);
  bool extendsLeft(const GenomeInterval& interval);
  const Suffix& at(uint64_t suffix) const {
    return recent_[suffix & (recent_.size() - 1)];
  }

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  MergedStrings& strings_;
  uint32_t fewest_;
  std::function<void(const UniqueMatch&)> take_;
  std::vector<Suffix> recent_;  // the last ones, as many as genomes at least
  GenomeIntervals<UniqueMatches> intervals_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_UNIQUE_MATCHES_H_
