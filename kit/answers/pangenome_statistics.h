// What is told of genomes by the numbers of k-mers that occur in 1, 2, ... of
// them.

#ifndef PALVOR_KIT_ANSWERS_PANGENOME_STATISTICS_H_
#define PALVOR_KIT_ANSWERS_PANGENOME_STATISTICS_H_

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kit {

// The chance that of `chosen` of all genomes, chosen at random, at least
// `wanted` (1 or more) have a k-mer, by the genomes that have it, from 0: the
// tail of the hypergeometric distribution. Summed up from positive terms, so
// that nothing cancels.
std::vector<double> chancesOfAtLeast(uint32_t genomes, uint32_t chosen,
                                     uint32_t wanted);

// The fewest of so many genomes that a quorum, from 0 to 1, asks for: 1 or
// more.
uint32_t quorumOf(double quorum, uint32_t genomes);

// The expected number of different k-mers that so many of the genomes chosen at
// random have, of 1, 2, ..., all: at least one of them, or a quorum of them.
// Expected over all choices, exactly, not sampled.
class ExpectedCounts {
 public:
  ExpectedCounts(uint32_t genomes, std::optional<double> quorum);

  // Only for these numbers of genomes, of 1 or more and at most all.
  ExpectedCounts(uint32_t genomes, std::optional<double> quorum,
                 std::span<const uint32_t> chosen);

  //   counts  k-mers that occur in 1, 2, ... genomes
  std::vector<double> of(std::span<const uint64_t> counts) const;

 private:
  std::vector<std::vector<double>> chances_;  // by the genomes chosen
};

// Alpha of Heaps' law: the m-th genome adds about m^-alpha new k-mers, times a
// constant; a pangenome with alpha of at most 1 is open (Tettelin et al.,
// Current Opinion in Microbiology 2008). The line of least squares through the
// logarithms of what genomes 2, 3, ... add; nothing if less than two of these
// add anything.
std::optional<double> heapsAlpha(std::span<const double> growth);

// Hill numbers of orders 1 and 2 by incidence: how many k-mers there would be
// if all occurred in equally many genomes and were as diverse (Chao et al.,
// Ecological Monographs 2014). That of order 0 is the number of k-mers. 0 if
// there are none.
struct HillNumbers {
  double order1;
  double order2;
};
HillNumbers hillNumbers(std::span<const uint64_t> counts);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PANGENOME_STATISTICS_H_
