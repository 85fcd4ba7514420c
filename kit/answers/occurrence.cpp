#include "kit/answers/occurrence.h"

#include <algorithm>

namespace kit {

void sortOccurrences(std::vector<Occurrence>& occurrences) {
  std::sort(occurrences.begin(), occurrences.end());
  const auto samePlace = [](const Occurrence& a, const Occurrence& b) {
    return a.input == b.input && a.start == b.start;
  };
  occurrences.erase(
      std::unique(occurrences.begin(), occurrences.end(), samePlace),
      occurrences.end());
}

}  // namespace kit
