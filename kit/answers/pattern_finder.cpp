#include "kit/answers/pattern_finder.h"

#include <algorithm>

namespace kit {

std::vector<Occurrence> PatternFinder::find(const Pattern& pattern) const {
  const Pattern reverse = pattern.reverseComplement();
  const bool palindrome = reverse.text() == pattern.text();
  std::vector<Occurrence> found;
  find_(pattern, [&](const Suffix& suffix) {
    Occurrence occurrence = occurrenceOf(inputs_, inputNumber(suffix),
                                         suffix.pos, pattern.text().size());
    if (palindrome) occurrence.reverse = false;
    found.push_back(occurrence);
  });
  // Where both strands are in, the other one had the reverse complement.
  if (!inputs_.bothStrands() && !palindrome) {
    find_(reverse, [&](const Suffix& suffix) {
      Occurrence occurrence = occurrenceOf(inputs_, inputNumber(suffix),
                                           suffix.pos, pattern.text().size());
      occurrence.reverse = true;
      found.push_back(occurrence);
    });
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace kit
