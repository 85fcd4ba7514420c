// Maximal exact matches between sequences and the genomes of a merged order.

#ifndef PALVOR_KIT_ANSWERS_MAXIMAL_MATCHES_H_
#define PALVOR_KIT_ANSWERS_MAXIMAL_MATCHES_H_

#include <cstdint>
#include <string>

#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/suffix_search.h"

namespace kit {

// Prints all matches of at least `shortest` characters that can be extended on
// neither side, of each sequence of a file, in the layout of mummer: a line
// "> NAME", and one for each match with the genome's sequence, the match's
// place in it and in the file's sequence, counted from 1, and its length; then
// the same for the sequence's reverse complement, "> NAME Reverse", with places
// in that. Letters that stand for several bases match nothing, and records and
// what was split at such letters have ends. Throws std::runtime_error with the
// file's name.
void printMaximalMatches(const std::string& file, uint64_t shortest,
                         const MergedInputs& inputs, MergedStrings& strings,
                         SuffixSearch& search);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MAXIMAL_MATCHES_H_
