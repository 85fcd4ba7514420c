// Trees of genomes by their distances.

#ifndef PALVOR_KIT_ANSWERS_NEIGHBOUR_JOINING_H_
#define PALVOR_KIT_ANSWERS_NEIGHBOUR_JOINING_H_

#include <string>
#include <vector>

#include "kit/answers/genome_matrix.h"

namespace kit {

// The tree of neighbour joining (Saitou and Nei, Molecular Biology and
// Evolution 1987; as Studier and Keppler 1988), without a root, in the Newick
// format, its
// ";" included. Branches may be shorter than 0. Takes time that grows with the
// cube of the number of genomes. The distances must be symmetric and finite.
std::string neighbourJoining(GenomeMatrix<double> distances,
                             const std::vector<std::string>& names);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_NEIGHBOUR_JOINING_H_
