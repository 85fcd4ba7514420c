#include "palvor/text/stretches.h"

#include <algorithm>

namespace palvor {
namespace {

// Suffixes between one look-up and the next, at least.
constexpr size_t kAhead = 64;

// The next stretches may lie in the next line of the cache.
constexpr size_t kNextLine = 3;

}  // namespace

void Stretches::anchorsAt(std::span<const uint32_t> axisPositions,
                          uint32_t* anchors, uint64_t* keys) const {
  if (empty()) {
    std::ranges::copy(axisPositions, anchors);
    std::fill_n(keys, axisPositions.size(), 0);
    return;
  }
  const size_t count = axisPositions.size();
  const uint32_t* const blocks = blocks_.data();
  const Stretch* const stretches = stretches_.data();
  const uint32_t last = stretches[size() - 1].end;
  // What is nowhere is looked up, too, which costs less than a branch.
  const auto place = [&](size_t i) { return std::min(axisPositions[i], last); };
  uint32_t numbers[2 * kAhead] = {};
  for (size_t from = 0; from < count + 2 * kAhead; from += kAhead) {
    const size_t to = std::min(count, from + kAhead);
    for (size_t i = from; i < to; i++) {
      __builtin_prefetch(blocks + place(i) / kBlock, 0, 2);
    }
    const size_t numbersFrom = from < kAhead ? count : from - kAhead;
    for (size_t i = numbersFrom; i < std::min(count, from); i++) {
      const uint32_t number = blocks[place(i) / kBlock];
      __builtin_prefetch(stretches + number, 0, 2);
      __builtin_prefetch(stretches + number + kNextLine, 0, 2);
      numbers[i % (2 * kAhead)] = number;
    }
    const size_t lookFrom = from < 2 * kAhead ? count : from - 2 * kAhead;
    for (size_t i = lookFrom; i < std::min(count, from - kAhead); i++) {
      const uint32_t position = axisPositions[i];
      const uint32_t inside = place(i);
      const Stretch* stretch = stretches + numbers[i % (2 * kAhead)];
      // Few blocks have more than one start, and a branch for it would often
      // be mispredicted. The end mark can't be passed.
      stretch += stretch[1].start <= inside ? 1 : 0;
      while (stretch[1].start <= inside) stretch++;
      const uint64_t key = secondKey(stretch->end - inside, stretch->parting);
      anchors[i] = position == Axis::kNowhere
                       ? position
                       : stretch->anchor + (inside - stretch->start);
      keys[i] = position == Axis::kNowhere ? 0 : key;
    }
  }
}

size_t Stretches::memory() const {
  return stretches_.size() * sizeof(Stretch) + ranks_.memory() +
         sizeof(uint32_t) * (bases_.size() + blocks_.size());
}

}  // namespace palvor
