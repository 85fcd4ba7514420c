// Which strings have text in common, found out from a sample, for a small part
// of what reading them all would cost.

#ifndef PALVOR_TEXT_LIKENESS_H_
#define PALVOR_TEXT_LIKENESS_H_

#include <span>
#include <vector>

#include "palvor/text/packed_string.h"

namespace palvor {

// Per string, whether about a fiftieth of its text or more stands elsewhere,
// too, in another string or in itself. Short strings are judged together, and
// those of 32 characters or less have no likes. A guess, the same for the same
// strings.
std::vector<bool> stringsWithLikes(std::span<const PackedString> strings);

}  // namespace palvor

#endif  // PALVOR_TEXT_LIKENESS_H_
