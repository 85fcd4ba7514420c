// What somebody who mistyped a word may have meant.

#ifndef PALVOR_KIT_NEAREST_WORD_H_
#define PALVOR_KIT_NEAREST_WORD_H_

#include <string>
#include <vector>

namespace kit {

// The candidate that the fewest slips lead from to the word: characters left
// out, put in, changed, or exchanged with their neighbours (the optimal string
// alignment distance). Empty if more than a third of the word's characters, or
// more than one of a short word's, would be slips. The first of several.
std::string nearestWord(const std::string& word,
                        const std::vector<std::string>& candidates);

}  // namespace kit

#endif  // PALVOR_KIT_NEAREST_WORD_H_
