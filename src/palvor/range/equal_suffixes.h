// Suffixes of the same text in different inputs, told by where their strings
// end alike.

#ifndef PALVOR_RANGE_EQUAL_SUFFIXES_H_
#define PALVOR_RANGE_EQUAL_SUFFIXES_H_

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "palvor/format/suffix.h"
#include "palvor/text/collection.h"

namespace palvor {

class EqualSuffixes {
 public:
  explicit EqualSuffixes(const Collection& text) : text_(text) {}

  // Whether two suffixes, which must be there, are the same text. The ends of
  // two strings are compared once, however often it is asked.
  bool operator()(const Suffix& a, const Suffix& b) {
    const int bits = text_.remainingBits(a);
    return bits == text_.remainingBits(b) && prefixKey(a) == prefixKey(b) &&
           static_cast<uint32_t>(bits) / 2 <=
               commonEnd(inputNumber(a), inputNumber(b));
  }

  // Whether two inputs, which must be there, are the same text.
  bool areWhole(uint32_t a, uint32_t b) {
    return text_[a].bits == text_[b].bits &&
           commonEnd(a, b) == lengthOf(text_[a]);
  }

 private:
  // By how many characters two strings end alike.
  uint32_t commonEnd(uint32_t a, uint32_t b) {
    const auto [end, isNew] = ends_.try_emplace(std::minmax(a, b), 0);
    if (isNew) {
      const uint32_t lengthA = lengthOf(text_[a]);
      const uint32_t lengthB = lengthOf(text_[b]);
      end->second = commonCharactersBefore(text_[a], lengthA, text_[b], lengthB,
                                           std::min(lengthA, lengthB));
    }
    return end->second;
  }

  const Collection& text_;
  std::map<std::pair<uint32_t, uint32_t>, uint32_t> ends_;
};

}  // namespace palvor

#endif  // PALVOR_RANGE_EQUAL_SUFFIXES_H_
