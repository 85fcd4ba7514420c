// How long the longest substrings are that begin at the places of one genome
// and occur in another, for all pairs of genomes.

#ifndef PALVOR_KIT_ANSWERS_COMMON_SUBSTRINGS_H_
#define PALVOR_KIT_ANSWERS_COMMON_SUBSTRINGS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/answers/genome_matrix.h"
#include "kit/answers/genomes.h"
#include "kit/answers/lcp_intervals.h"
#include "kit/records.h"

namespace kit {

// What a place of genome A shares with genome B is the depth of the smallest
// LCP interval around its suffix that has one of B's. So each time that a
// genome joins others in an interval, their suffixes there, as many as there
// are, have found what they share. Memory: 8 bytes for each pair of genomes,
// and for each open interval 8 bytes a genome; there are as many as the strings
// of a run of repeats, such as AAAAA..., have characters.
class CommonSubstrings {
 public:
  // The genomes must outlive this.
  explicit CommonSubstrings(const Genomes& genomes);
  CommonSubstrings(const CommonSubstrings&) = delete;
  CommonSubstrings& operator=(const CommonSubstrings&) = delete;

  // Takes the next suffixes of the merged order and their LCP entries, which
  // must be right.
  void take(std::span<const Suffix> suffixes,
            std::span<const LcpEntry> entries);

  // To be called once, when all suffixes were taken, but for finish(): adds
  // those of another piece of the order, which was cut where all genomes are on
  // either side (kit/answers/array_cuts.h), and which is not used any more.
  void add(CommonSubstrings& other);

  // To be called once, when all suffixes were taken. Entry (a, b) is the sum of
  // the lengths over all characters of a on all strands that are in.
  GenomeMatrix<uint64_t> finish();

 private:
  friend class LcpIntervals<CommonSubstrings>;

  void open(size_t slot);
  void addSuffix(size_t slot, uint32_t depth);
  void close(size_t, uint32_t, uint32_t) {}
  void merge(size_t slot, uint32_t depth);

  // Of an open interval: the suffixes of each genome, and a bit for each genome
  // that has any. Once all have, the suffixes are not counted any more.
  uint64_t* countsOf(size_t slot) { return &counts_[slot * genomes_.count()]; }
  uint64_t* setOf(size_t slot) { return &sets_[slot * setWords_]; }

  // Adds to the sums of each genome of a set, with each genome that only the
  // other set has, so many characters for each of its suffixes.
  void meet(const uint64_t* set, const uint64_t* counts, const uint64_t* others,
            uint32_t depth);

  const Genomes& genomes_;
  size_t setWords_;
  std::vector<uint64_t> all_;  // the set of all genomes
  std::vector<uint64_t> counts_;
  std::vector<uint64_t> sets_;
  std::vector<bool> full_;  // by slot: all genomes are in it
  GenomeMatrix<uint64_t> sums_;
  std::vector<uint64_t> withAll_;  // to be added to the sums of a genome with
                                   // each other one
  uint32_t genome_ = 0;            // of the last suffix
  bool begun_ = false;
  LcpIntervals<CommonSubstrings> intervals_;
};

// Distances by average common substrings (Ulitsky, Burstein, Tuller and Chor,
// Journal of Computational Biology 2006), of the sums above. Where two genomes
// have nothing in common, infinite.
//   lengths  of the genomes in characters, on all strands
GenomeMatrix<double> acsDistances(const GenomeMatrix<uint64_t>& sums,
                                  const std::vector<uint64_t>& lengths);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_COMMON_SUBSTRINGS_H_
