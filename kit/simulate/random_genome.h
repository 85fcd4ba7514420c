// Random genomes and what changes them, the same on every machine.

#ifndef PALVOR_KIT_SIMULATE_RANDOM_GENOME_H_
#define PALVOR_KIT_SIMULATE_RANDOM_GENOME_H_

#include <cstdint>
#include <random>
#include <string>

namespace kit {

// The standard's distributions differ between libraries; its engines do not.
class Random {
 public:
  explicit Random(uint64_t seed) : engine_(seed) {}

  char base() { return "ACGT"[engine_() >> 62]; }

  // One of the three other bases.
  char otherBase(char base);

  // From 0 to below 1, in steps of 2^-53.
  double fraction() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }

  // True with the given probability.
  bool chance(double probability) { return fraction() < probability; }

  // From 0 to below `limit`.
  unsigned below(unsigned limit) {
    return static_cast<unsigned>((engine_() >> 32) * limit >> 32);
  }

 private:
  std::mt19937_64 engine_;
};

// So many characters that depend on nothing.
std::string randomGenome(Random& random, uint64_t length);

// A descendant of `ancestor`, which has characters, by so many mutations for
// each of them (0 to 1): eight in ten are substitutions, one is an insertion
// and one a deletion of 1 to 10 characters. It has characters too.
std::string mutate(Random& random, const std::string& ancestor,
                   double divergence);

// Changes `genome`, which has characters, as strains change besides, for each
// 10,000 mutations: 4 inversions, 20 regions that are lost and 20 random ones
// that are gained, each of up to 20,000 characters or a twentieth of the
// genome.
void rearrange(Random& random, std::string& genome, double divergence);

}  // namespace kit

#endif  // PALVOR_KIT_SIMULATE_RANDOM_GENOME_H_
