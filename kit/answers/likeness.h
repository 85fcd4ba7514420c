// How much two genomes are alike by their k-mers.

#ifndef PALVOR_KIT_ANSWERS_LIKENESS_H_
#define PALVOR_KIT_ANSWERS_LIKENESS_H_

#include <cstdint>

#include "kit/answers/genome_matrix.h"

namespace kit {

struct Likeness {
  uint64_t shared;  // k-mers
  double jaccard;
  double containmentA;  // the part of a's that b has
  double containmentB;
  double mash;  // Mash distance (Ondov et al., Genome Biology 2016)
};

//   shared  k-mers that each two genomes share; with itself, all of a genome's
Likeness likenessOf(const GenomeMatrix<uint64_t>& shared, uint32_t a,
                    uint32_t b, uint32_t k);

// The Mash distances of all pairs.
GenomeMatrix<double> mashDistances(const GenomeMatrix<uint64_t>& shared,
                                   uint32_t k);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_LIKENESS_H_
