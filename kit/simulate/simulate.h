// Random genomes, the same on every machine.

#ifndef PALVOR_KIT_SIMULATE_SIMULATE_H_
#define PALVOR_KIT_SIMULATE_SIMULATE_H_

#include <cstdint>
#include <string>

namespace kit {

struct SimulateOptions {
  int genomes = 1;
  uint64_t length = 0;     // characters of the ancestor
  double divergence = 0;   // mutations for each of them, 0 to 1
  bool phylogeny = false;  // along a tree, not each for itself
  uint64_t seed = 1;
  std::string directory;  // empty: standard output
};

// Writes the genomes as FASTA, to standard output or each to a file of its own,
// and beside these the tree of a phylogeny.
// Throws std::exception, which names what cannot be written.
void simulate(const SimulateOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_SIMULATE_SIMULATE_H_
