// In how many genomes the k-mers of a collection occur, for every k at once.
//
// A k-mer that occurs at all is a prefix of suffixes that stand side by side in
// the merged order. If there are several, they are those of one LCP interval,
// whose depth is k or more and whose parent's is less: so each interval stands
// for one k-mer of every length between the two, and they all occur in the same
// genomes.

#ifndef PALVOR_KIT_ANSWERS_KMER_SPECTRUM_H_
#define PALVOR_KIT_ANSWERS_KMER_SPECTRUM_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "kit/answers/genome_intervals.h"
#include "kit/answers/genomes.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/palindromes.h"
#include "kit/records.h"

namespace kit {

// Lengths of k-mers, both included, 1 or more.
struct KmerLengths {
  uint32_t min;
  uint32_t max;
};

// Numbers of different k-mers, by k and by the genomes that have them.
class KmerCounts {
 public:
  KmerCounts(KmerLengths k, uint32_t genomes)
      : k_(k),
        genomes_(genomes),
        counts_(size_t{k.max - k.min + 1} * genomes) {}

  KmerLengths k() const { return k_; }
  uint32_t genomes() const { return genomes_; }

  // Of k-mers that occur in 1, 2, ... genomes.
  std::span<uint64_t> of(uint32_t k) {
    return std::span(counts_).subspan(size_t{k - k_.min} * genomes_, genomes_);
  }
  std::span<const uint64_t> of(uint32_t k) const {
    return std::span(counts_).subspan(size_t{k - k_.min} * genomes_, genomes_);
  }

  // Adds those of another one of the same lengths and genomes.
  void add(const KmerCounts& other) {
    for (size_t i = 0; i < counts_.size(); i++) counts_[i] += other.counts_[i];
  }

 private:
  KmerLengths k_;
  uint32_t genomes_;
  std::vector<uint64_t> counts_;
};

// K-mers as they are met. Where both strands are in and a k-mer and its reverse
// complement shall count as one, those that are not the same are met twice.
class KmerTally {
 public:
  KmerTally(KmerLengths k, uint32_t genomes, bool canonical)
      : counts_(k, genomes) {
    if (canonical) ownReverses_.emplace(k, genomes);
  }

  KmerCounts& counts() { return counts_; }
  // Those that are their own reverse complements; only if canonical.
  KmerCounts& ownReverses() { return *ownReverses_; }

  // Adds those of another one of the same lengths and genomes.
  void add(const KmerTally& other);

  // Different k-mers.
  KmerCounts result() const;

 private:
  KmerCounts counts_;
  std::optional<KmerCounts> ownReverses_;
};

// What tells which k-mers of both strands are palindromes; null if k-mers need
// not be canonical. Throws FileError if a string cannot be read.
std::shared_ptr<const Palindromes> palindromesFor(const MergedInputs& inputs,
                                                  KmerLengths k,
                                                  bool canonical);

// Whether a k-mer and its reverse complement shall count as one: as wished, or,
// without a wish, where both strands are in. Throws std::runtime_error if they
// cannot.
bool isCanonical(const MergedInputs& inputs, std::optional<bool> wish);

// Occurrences of k-mers, by k from k.min on.
std::vector<uint64_t> kmerTotals(const MergedInputs& inputs, KmerLengths k,
                                 bool canonical);

// Memory: 16 bytes for each k and number of genomes, 24 if k-mers are
// canonical, and 8 for each genome.
class KmerSpectrum {
 public:
  // The inputs and genomes must outlive this.
  //   palindromes  not null: a k-mer and its reverse complement count as one;
  //                the inputs must be of both strands
  KmerSpectrum(const MergedInputs& inputs, const Genomes& genomes,
               KmerLengths k, std::shared_ptr<const Palindromes> palindromes);

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // Characters that some suffix of a genome shares with the last one taken; of
  // that itself, those that it shares with the one before. Lengths above k.max
  // are k.max, and those below k.min, or of a genome without any, k.min - 1.
  uint32_t sharedWithLast(uint32_t genome) const {
    return intervals_.depthWithLast(genome);
  }

  // To be called once, when all suffixes were taken.
  KmerTally finish();

 private:
  friend class GenomeIntervals<KmerSpectrum>;

  void close(const GenomeInterval& interval);
  void countSingles(uint32_t common);
  void countPalindromes(const GenomeInterval& interval);

  const std::vector<uint32_t>& lengths_;
  const std::vector<uint32_t>& genomeOf_;
  KmerLengths k_;
  uint32_t genomes_;
  // Lengths are at most k.max, and k.min - 1 where they are less.
  GenomeIntervals<KmerSpectrum> intervals_;
  uint32_t common_;  // characters that the last two suffixes share
  uint32_t rest_;    // characters of the last suffix
  Suffix last_{};
  std::vector<int64_t>
      changes_;  // row k: how counts differ from those of k - 1
  std::vector<int64_t> singles_;  // the same, of k-mers that occur once
  std::shared_ptr<const Palindromes> palindromes_;  // null: not canonical
  KmerTally tally_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_KMER_SPECTRUM_H_
