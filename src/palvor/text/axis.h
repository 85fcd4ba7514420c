// The strings that take part, one behind the other on one axis of positions,
// from the longest to the shortest, each followed by a position for its end.

#ifndef PALVOR_TEXT_AXIS_H_
#define PALVOR_TEXT_AXIS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <span>
#include <vector>

#include "palvor/text/packed_string.h"

namespace palvor {

class Axis {
 public:
  static constexpr uint32_t kNowhere = UINT32_MAX;

  // A position in a string that takes part; strings are counted in the order
  // of the axis.
  struct Place {
    size_t string;
    uint32_t position;  // in characters; the length at the end
  };

  // Those of the strings that `takePart` says and that are whole (isWhole), as
  // far as there is room for them on an axis of less than 2^32 - 1 positions.
  Axis(std::span<const PackedString> strings,
       const std::vector<bool>& takePart) {
    std::vector<uint32_t> order(strings.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, [&](uint32_t a, uint32_t b) {
      return lengthOf(strings[a]) > lengthOf(strings[b]);
    });
    basesByInput_.assign(strings.size(), kNowhere);
    uint64_t base = 0;
    for (const uint32_t input : order) {
      const uint64_t next = base + lengthOf(strings[input]) + 1;
      if (!takePart[input] || !isWhole(strings[input]) || next >= kNowhere) {
        continue;
      }
      basesByInput_[input] = static_cast<uint32_t>(base);
      strings_.push_back(strings[input]);
      bases_.push_back(static_cast<uint32_t>(base));
      base = next;
    }
    end_ = static_cast<uint32_t>(base);
  }

  size_t strings() const { return strings_.size(); }
  const PackedString& string(size_t s) const { return strings_[s]; }
  uint32_t base(size_t s) const { return bases_[s]; }

  // Behind the last string's end.
  uint32_t end() const { return end_; }

  // Per input, its first position, or kNowhere.
  const std::vector<uint32_t>& basesByInput() const { return basesByInput_; }

  Place placeOf(uint32_t axisPosition) const {
    const auto behind = std::ranges::upper_bound(bases_, axisPosition);
    const auto s = static_cast<size_t>(behind - bases_.begin()) - 1;
    return {s, axisPosition - bases_[s]};
  }

 private:
  std::vector<PackedString> strings_;
  std::vector<uint32_t> bases_;
  std::vector<uint32_t> basesByInput_;
  uint32_t end_ = 0;
};

}  // namespace palvor

#endif  // PALVOR_TEXT_AXIS_H_
