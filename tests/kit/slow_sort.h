// The slow, obvious suffix order and common prefixes, to hold the fast ones
// against: suffixes as texts, sorted as texts; bits as characters '0' and '1'.

#ifndef PALVOR_TESTS_KIT_SLOW_SORT_H_
#define PALVOR_TESTS_KIT_SLOW_SORT_H_

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "sources/suffix.h"

struct SlowSuffix {
  std::string text;
  uint32_t input;
  uint32_t position;  // in characters
};

// All suffixes of all inputs, equal ones by input number.
inline std::vector<SlowSuffix> slowSort(
    const std::vector<std::string>& inputs) {
  std::vector<SlowSuffix> suffixes;
  for (uint32_t i = 0; i < inputs.size(); i++) {
    for (uint32_t p = 0; p < inputs[i].size(); p++) {
      suffixes.push_back({inputs[i].substr(p), i, p});
    }
  }
  std::sort(suffixes.begin(), suffixes.end(),
            [](const SlowSuffix& a, const SlowSuffix& b) {
              return std::tie(a.text, a.input) < std::tie(b.text, b.input);
            });
  return suffixes;
}

inline std::string slowBits(std::string_view text) {
  std::string bits;
  for (char c : text) {
    bits += c == 'A' ? "00" : c == 'C' ? "01" : c == 'G' ? "10" : "11";
  }
  return bits;
}

// The LCP entry of two suffixes: twice the common bits, plus 1 if they part
// before the shorter one ends.
inline uint32_t slowEntry(std::string_view a, std::string_view b) {
  const std::string x = slowBits(a), y = slowBits(b);
  const size_t shorter = std::min(x.size(), y.size());
  uint32_t shared = 0;
  while (shared < shorter && x[shared] == y[shared]) shared++;
  return 2 * shared + (shared < shorter ? 1 : 0);
}

// One entry for each suffix, with the one before it; 0 for the first.
inline std::vector<uint32_t> slowEntries(
    const std::vector<SlowSuffix>& suffixes) {
  std::vector<uint32_t> entries;
  for (size_t i = 0; i < suffixes.size(); i++) {
    entries.push_back(
        i == 0 ? 0 : slowEntry(suffixes[i - 1].text, suffixes[i].text));
  }
  return entries;
}

// The record of a suffix as a .stpsa file holds it, of an input numbered
// `firstInput` higher.
inline Suffix slowRecord(const SlowSuffix& suffix, uint32_t firstInput) {
  std::string bits = slowBits(suffix.text.substr(0, 32));
  bits.resize(64, '0');
  const uint64_t prefix = std::stoull(bits, nullptr, 2);
  return {(suffix.input + firstInput) * 4, suffix.position,
          static_cast<uint32_t>(prefix >> 32), static_cast<uint32_t>(prefix)};
}

#endif  // PALVOR_TESTS_KIT_SLOW_SORT_H_
