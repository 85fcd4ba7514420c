// Where to cut a merged order into pieces, which threads go through side by
// side (kit/answers/array_pieces.h).
//
// What crosses a cut has fewer characters than the suffixes on either side of
// it share there. So with cuts where they share little, what has more is in one
// piece; and where these few characters are known to be of too many genomes, on
// either side, what they are of on both sides together does not matter.

#ifndef PALVOR_KIT_ANSWERS_ARRAY_CUTS_H_
#define PALVOR_KIT_ANSWERS_ARRAY_CUTS_H_

#include <cstdint>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"

namespace kit {

// The pieces begin at these records, 0 among them; another one is the end.
using ArrayCuts = std::vector<uint64_t>;

// As many pieces as keep the threads busy to the end, of the same size.
ArrayCuts evenCuts(const MergedArray& array, int jobs);

// About as many, or fewer, at places where the neighbours share less than
// `most` characters, 1 or more. Throws FileError if the array cannot be read.
ArrayCuts cutsBelow(const MergedArray& array, int jobs, uint32_t most);

// Of such cuts those where, on either side, the suffixes that share as much
// with that at the cut as this does across it are of enough genomes.
//   counted  of each genome, whether it counts
//   enough   how many of these there must be
ArrayCuts cutsAmong(const MergedArray& array, ArrayCuts cuts,
                    const Genomes& genomes, const std::vector<bool>& counted,
                    uint32_t enough);

// What neighbours share across a cut at most, in characters; 0 without any.
uint32_t sharedAcross(const MergedArray& array, const ArrayCuts& cuts);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_ARRAY_CUTS_H_
