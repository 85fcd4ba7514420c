// Which input a position of a text is in.

#ifndef PALVOR_KIT_PREPARE_INPUT_FINDER_H_
#define PALVOR_KIT_PREPARE_INPUT_FINDER_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/prepare/psa_text.h"

namespace kit {

class InputFinder {
 public:
  explicit InputFinder(const PsaText& psa);

  // Index of the input that a position is in; it must be in one.
  size_t find(size_t position) const {
    const size_t block = position / kBlock;
    const uint32_t from = firstOfBlock_[block];
    const uint32_t to = firstOfBlock_[block + 1];
    if (from == to) return from;
    const auto after = std::upper_bound(begins_.begin() + from,
                                        begins_.begin() + to + 1, position);
    return static_cast<size_t>(after - begins_.begin()) - 1;
  }

  // First position of an input, and the one after its last.
  uint32_t begin(size_t input) const { return begins_[input]; }
  uint32_t end(size_t input) const { return ends_[input]; }

  // Characters from a position to the end of its input.
  uint32_t rest(size_t position) const {
    return ends_[find(position)] - static_cast<uint32_t>(position);
  }

 private:
  static constexpr size_t kBlock = 1024;  // characters

  std::vector<uint32_t> begins_, ends_;
  std::vector<uint32_t> firstOfBlock_;  // input of each block's first character
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_INPUT_FINDER_H_
