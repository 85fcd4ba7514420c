#include "palvor/text/stretches.h"

#include <algorithm>

namespace palvor {
namespace {

// How many suffixes ahead the block of one and its stretch are asked for.
constexpr size_t kBlockAhead = 32;
constexpr size_t kStretchAhead = 16;

}  // namespace

void Stretches::anchorsAt(std::span<const uint32_t> axisPositions,
                          uint32_t* anchors, uint64_t* keys) const {
  const size_t count = axisPositions.size();
  const auto blockOf = [&](size_t i) {
    const uint32_t position = axisPositions[i];
    return &blocks_[position == Axis::kNowhere ? 0 : position / kBlock];
  };
  for (size_t step = 0; step < count + kBlockAhead; step++) {
    if (step < count) __builtin_prefetch(blockOf(step));
    const size_t near = step - (kBlockAhead - kStretchAhead);
    if (near < count) {
      const Stretch* stretch = &stretches_[*blockOf(near)];
      __builtin_prefetch(stretch);
      __builtin_prefetch(stretch + 3);
    }
    const size_t i = step - kBlockAhead;
    if (i >= count) continue;
    const uint32_t position = axisPositions[i];
    if (position == Axis::kNowhere) {
      anchors[i] = position;
      keys[i] = 0;
      continue;
    }
    // How many stretches begin before it in its block can't be foreseen: no
    // branches for the first three.
    uint32_t number = *blockOf(i);
    const Stretch* stretch = &stretches_[number];
    for (uint32_t next = 1; next <= kEndMarks; next++) {
      number += stretch[next].start <= position ? 1 : 0;
    }
    while (stretches_[number + 1].start <= position) number++;
    const Anchor anchor = anchorIn(number, position);
    anchors[i] = anchor.position;
    keys[i] = anchor.key;
  }
}

size_t Stretches::memory() const {
  return stretches_.size() * sizeof(Stretch) + ranks_.memory() +
         sizeof(uint32_t) * (bases_.size() + blocks_.size());
}

}  // namespace palvor
