#include "kit/answers/occurrence.h"

#include <algorithm>

namespace kit {

bool settleStrands(std::vector<Occurrence>& occurrences, bool bothStrands) {
  std::sort(occurrences.begin(), occurrences.end());
  if (!bothStrands || occurrences.empty()) return true;
  if (occurrences[0].reverse) return false;
  const auto samePlace = [](const Occurrence& a, const Occurrence& b) {
    return a.input == b.input && a.start == b.start;
  };
  occurrences.erase(
      std::unique(occurrences.begin(), occurrences.end(), samePlace),
      occurrences.end());
  return true;
}

}  // namespace kit
