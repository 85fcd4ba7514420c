// Where two suffixes part, by their strings alone.

#ifndef PALVOR_TEXT_STRING_COMPARE_H_
#define PALVOR_TEXT_STRING_COMPARE_H_

#include "palvor/format/suffix.h"
#include "palvor/simd/target.h"
#include "palvor/text/collection.h"
#include "palvor/text/comparison.h"
#include "palvor/text/long_matches.h"

namespace palvor {

// Compares two suffixes without a look at their prefix words. `known` bits, 32
// or more, are known to be equal: it begins with the bit that firstBitExamined
// tells. Long matches are asked for and remembered.
//
// Reads the strings up to one word past a string's last character: the zero
// word that ends every string allows it.
using StringCompare = Comparison (*)(const Collection& text,
                                     LongMatches& matches, const Suffix& a,
                                     const Suffix& b, int known);

// The version for this processor.
StringCompare stringCompare(Processor processor);

}  // namespace palvor

#endif  // PALVOR_TEXT_STRING_COMPARE_H_
