// How many different k-mers each pair of genomes shares, for one k.

#ifndef PALVOR_KIT_ANSWERS_SHARED_KMERS_H_
#define PALVOR_KIT_ANSWERS_SHARED_KMERS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "kit/answers/genome_matrix.h"
#include "kit/answers/genomes.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/palindromes.h"
#include "kit/records.h"

namespace kit {

// Memory: 8 bytes for each pair of genomes, and up to 100 MB.
class SharedKmers {
 public:
  // The inputs and genomes must outlive this. Where both strands are in, a
  // k-mer and its reverse complement count as one.
  SharedKmers(const MergedInputs& inputs, const Genomes& genomes, uint32_t k);

  // The same, without anything that was taken, for a piece of the order.
  SharedKmers emptied() const;

  uint32_t k() const { return k_; }

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // Adds those of another piece of the order, which was cut where neighbours
  // share no k-mer, and which is not used any more.
  void add(SharedKmers& other);

  // To be called once, when all suffixes were taken. A genome's number with
  // itself is that of its k-mers.
  GenomeMatrix<uint64_t> finish();

 private:
  // A bit for each genome.
  using Set = std::vector<uint64_t>;
  struct HashSet {
    size_t operator()(const Set& set) const;
  };

  void endKmer();
  void countPairs();

  const MergedInputs& inputs_;
  const Genomes& genomes_;
  uint32_t k_;
  bool canonical_;
  std::shared_ptr<const Palindromes> palindromes_;
  bool open_ = false;  // there is a k-mer, that of the last suffixes
  Suffix last_{};      // that had one
  Set having_;         // the genomes that have it
  std::unordered_map<Set, uint64_t, HashSet> sets_;  // k-mers by their genomes
  GenomeMatrix<uint64_t> shared_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_SHARED_KMERS_H_
