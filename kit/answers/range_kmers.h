// In how many genomes k-mers occur, counted range by range of a merged order:
// side by side, and put together exactly.
//
// The k-mers of a range are counted as if there were no others, but for those
// that its first or its last suffix begins with, which may go on in the next
// range. Of these the range keeps which genomes have them, for all k at once:
// for each genome, how many characters one of its suffixes shares with the
// first one, and with the last one.

#ifndef PALVOR_KIT_ANSWERS_RANGE_KMERS_H_
#define PALVOR_KIT_ANSWERS_RANGE_KMERS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "kit/answers/kmer_spectrum.h"
#include "kit/records.h"

namespace kit {

// Lengths in characters: more than k.max is k.max, less than k.min is k.min
// - 1.
struct RangeEdge {
  Suffix suffix{};         // the first or the last one
  uint32_t rest = 0;       // its length
  uint32_t neighbour = 0;  // what it shares with the one beside it in the range
  std::vector<uint32_t> shared;  // with some suffix of each genome
};
struct RangeEdges {
  uint64_t suffixes = 0;  // of the range; 0: nothing else is set
  uint32_t common = 0;    // what all of them share
  RangeEdge first, last;
};

class RangeKmers {
 public:
  // As KmerSpectrum.
  RangeKmers(const MergedInputs& inputs, const Genomes& genomes, KmerLengths k,
             std::shared_ptr<const Palindromes> palindromes);

  // Takes the next suffixes of the range and their LCP entries, which must be
  // right. The very first one is not looked at.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // To be called once, when all suffixes were taken: adds what is complete to
  // the tally, and returns what is not.
  RangeEdges finish(KmerTally& tally);

 private:
  uint32_t clamped(uint32_t characters) const;
  uint32_t restOf(const Suffix& suffix) const;
  void takeFirst(const Suffix& suffix);

  const std::vector<uint32_t>& lengths_;
  const std::vector<uint32_t>& genomeOf_;
  KmerLengths k_;
  std::shared_ptr<const Palindromes> palindromes_;
  KmerSpectrum spectrum_;
  RangeEdges edges_;
};

// Puts the edges of ranges together.
class RangeSeams {
 public:
  // The tally must outlive this.
  RangeSeams(KmerLengths k, uint32_t genomes,
             std::shared_ptr<const Palindromes> palindromes, KmerTally& tally);

  // Takes the edges of the next range.
  //   entry  of the range's first suffix with the last one before it; of the
  //          first range it is not looked at
  void take(const RangeEdges& edges, LcpEntry entry);

  // To be called once, when all ranges were taken.
  void finish();

 private:
  KmerLengths k_;
  std::shared_ptr<const Palindromes> palindromes_;
  KmerTally& tally_;
  RangeEdge open_;  // the last suffix so far
};

// The ranges of an order, counted in any turn, by several threads.
class RangeCounts {
 public:
  // As KmerSpectrum.
  RangeCounts(const MergedInputs& inputs, const Genomes& genomes, KmerLengths k,
              std::shared_ptr<const Palindromes> palindromes, size_t ranges);

  // Begins to count a range.
  RangeKmers begin() const { return {inputs_, genomes_, k_, palindromes_}; }

  // Adds a range whose suffixes were all taken. Threads may do so side by side.
  //   entry  of its first suffix with the last one before it
  void add(size_t range, RangeKmers& kmers, LcpEntry entry);

  // To be called once, when all ranges were added.
  KmerCounts finish();

  // Of all ranges that were added.
  uint64_t suffixes() const { return suffixes_; }

 private:
  struct Edges {
    RangeEdges edges;
    LcpEntry entry = 0;
  };

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  KmerLengths k_;
  std::shared_ptr<const Palindromes> palindromes_;
  std::mutex mutex_;  // guards all below
  std::vector<Edges> edges_;
  KmerTally tally_;
  uint64_t suffixes_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_RANGE_KMERS_H_
