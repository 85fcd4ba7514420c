#include "support/relatives.h"

#include <cstddef>
#include <random>

Collection relatives(uint32_t seed, int strings, const std::string& letters) {
  std::mt19937 random(seed);
  const auto upTo = [&](size_t most) { return random() % (most + 1); };
  Collection collection;
  for (int i = 0; i < strings; i++) {
    std::string text;
    for (size_t n = upTo(12); n > 0; n--) {
      text += letters[upTo(letters.size() - 1)];
    }
    if (i > 0) {
      const std::string& other =
          collection.texts[upTo(static_cast<size_t>(i) - 1)];
      const size_t from = upTo(other.size() / 3);
      text = (upTo(3) == 0 ? "" : text) + other.substr(from);
    }
    while (text.size() < 5 + upTo(90)) text += text.empty() ? "A" : text;
    collection.texts.push_back(text.substr(0, 300));
  }
  return collection;
}
