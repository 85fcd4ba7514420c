#include "kit/nearest_word.h"

#include <algorithm>
#include <cstddef>

namespace kit {
namespace {

size_t slips(const std::string& a, const std::string& b) {
  const size_t width = b.size() + 1;
  std::vector<size_t> table((a.size() + 1) * width);
  const auto at = [&](size_t i, size_t j) -> size_t& {
    return table[i * width + j];
  };
  for (size_t i = 0; i <= a.size(); i++) at(i, 0) = i;
  for (size_t j = 0; j <= b.size(); j++) at(0, j) = j;
  for (size_t i = 1; i <= a.size(); i++) {
    for (size_t j = 1; j <= b.size(); j++) {
      const size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      at(i, j) = std::min(
          {at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
      }
    }
  }
  return at(a.size(), b.size());
}

}  // namespace

std::string nearestWord(const std::string& word,
                        const std::vector<std::string>& candidates) {
  constexpr size_t kLongestWord = 100;  // more is no slip of the hand
  if (word.size() > kLongestWord) return "";
  size_t least = std::max<size_t>(1, word.size() / 3) + 1;
  std::string nearest;
  for (const std::string& candidate : candidates) {
    const size_t count = slips(word, candidate);
    if (count < least && count < candidate.size()) {
      least = count;
      nearest = candidate;
    }
  }
  return nearest;
}

}  // namespace kit
