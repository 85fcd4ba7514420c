// Finds out along which earlier text each string runs.
//
// Strings are taken from the longest to the shortest, and each is walked once.
// Where it is like nothing known, sampled k-mers (text/sampled_kmers.h) are
// looked up among those of all text that was new so far, and told. Where one is
// found, its text and that of the earlier place are compared to both sides, and
// then on along the same diagonal, over differences, as long as the text behind
// them is alike.
//
// The earlier text may itself run along something earlier: then that is what
// the string is anchored to, piece by piece (*hand over*), so that equal text
// has equal anchors wherever it stands. How far a string agrees with its
// anchor's text is always told exactly, also where a piece ends earlier.
//
// Relatives: relative Lempel-Ziv factorization (Kuruppu, Puglisi, Zobel 2010);
// compressed matching statistics (Liptak, Masillo, Puglisi 2024).

#ifndef PALVOR_TEXT_STRETCH_BUILDER_H_
#define PALVOR_TEXT_STRETCH_BUILDER_H_

#include <span>
#include <vector>

#include "palvor/text/packed_string.h"
#include "palvor/text/stretches.h"

namespace palvor {

// The stretches of all strings that are like others or like themselves
// (text/likeness.h). They are read during the call alone. Memory that cannot be
// had is a std::bad_alloc.
Stretches buildStretches(std::span<const PackedString> strings);

// The same, of those strings alone that `takePart` says, one for each.
Stretches buildStretches(std::span<const PackedString> strings,
                         const std::vector<bool>& takePart);

}  // namespace palvor

#endif  // PALVOR_TEXT_STRETCH_BUILDER_H_
