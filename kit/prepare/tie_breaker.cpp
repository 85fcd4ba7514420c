#include "kit/prepare/tie_breaker.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kit {
namespace {

// So few are compared with each other, and not sorted by keys.
constexpr size_t kFew = 4;

// Suffixes that share this many characters are copies of a long stretch. Up to
// kSomeCopies are compared, since comparisons need not read what they share.
constexpr size_t kLongMatch = 256;
constexpr size_t kSomeCopies = 64;

// More copies of a stretch that long would be read through for each of them.
constexpr size_t kLongestKeyed = 1 << 16;

// Stands for a number of bits that is still to be found; above all others.
constexpr uint32_t kOpen = ~uint32_t{0};

}  // namespace

void TieBreaker::settle(std::span<uint32_t> positions, size_t depth,
                        std::span<uint32_t> shared) {
  if (positions.size() <= kFew ||
      (depth >= kLongMatch && positions.size() <= kSomeCopies)) {
    compareAll(positions, depth, shared);
    return;
  }
  if (depth > kLongestKeyed) throw TooRepetitive();
  budget_.spend(2 * positions.size());
  const size_t ended = settleEnded(positions, depth, shared);
  settleByKeys(positions.subspan(ended), depth, shared.subspan(ended));
}

void TieBreaker::compareAll(std::span<uint32_t> positions, size_t depth,
                            std::span<uint32_t> shared) {
  if (positions.size() == 2) {
    const auto [bits, inOrder] =
        comparer_.compare(positions[0], positions[1], depth);
    if (!inOrder) std::swap(positions[0], positions[1]);
    shared[1] = static_cast<uint32_t>(bits);
  } else {
    std::sort(positions.begin(), positions.end(), [&](uint32_t a, uint32_t b) {
      return a != b && comparer_.compare(a, b, depth).firstIsLess;
    });
    for (size_t i = 1; i < positions.size(); i++) {
      const auto [bits, inOrder] =
          comparer_.compare(positions[i - 1], positions[i], depth);
      shared[i] = static_cast<uint32_t>(bits);
    }
  }
  budget_.spend(comparer_.takeSteps());
}

// Brings those that end within the depth to the front, the shortest first, and
// returns their number. They begin all that come after them.
size_t TieBreaker::settleEnded(std::span<uint32_t> positions, size_t depth,
                               std::span<uint32_t> shared) {
  const auto middle = std::partition(
      positions.begin(), positions.end(),
      [&](uint32_t position) { return finder_.rest(position) <= depth; });
  std::sort(positions.begin(), middle, [&](uint32_t a, uint32_t b) {
    return std::pair(finder_.rest(a), a) < std::pair(finder_.rest(b), b);
  });
  const auto ended = static_cast<size_t>(middle - positions.begin());
  for (size_t i = 1; i < positions.size() && i <= ended; i++) {
    shared[i] = static_cast<uint32_t>(2 * depth);
  }
  return ended;
}

// None of them ends within the depth. A key holds as much of the text as the
// suffix's index in the span leaves room for.
void TieBreaker::settleByKeys(std::span<uint32_t> positions, size_t depth,
                              std::span<uint32_t> shared) {
  const size_t count = positions.size();
  if (count < 2) return;
  const uint64_t indexMask = std::bit_ceil(count) - 1;
  std::vector<uint64_t>& keys = buffers_.keys;
  keys.resize(count);
  for (size_t i = 0; i < count; i++) {
    keys[i] = (charactersAt(words_, positions[i] + depth) & ~indexMask) | i;
  }
  sorter_(keys.data(), count);
  buffers_.positions.assign(positions.begin(), positions.end());
  positions[0] = buffers_.positions[keys[0] & indexMask];
  for (size_t i = 1; i < count; i++) {
    positions[i] = buffers_.positions[keys[i] & indexMask];
    const uint64_t unequal = (keys[i] ^ keys[i - 1]) & ~indexMask;
    shared[i] =
        unequal == 0
            ? kOpen
            : static_cast<uint32_t>(
                  2 * depth + static_cast<size_t>(std::countl_zero(unequal)));
  }
  const size_t deeper =
      depth + (64 - static_cast<size_t>(std::popcount(indexMask))) / 2;
  for (size_t i = 1; i < count;) {
    if (shared[i] != kOpen) {
      i++;
      continue;
    }
    const size_t first = i - 1;
    while (i < count && shared[i] == kOpen) i++;
    settle(positions.subspan(first, i - first), deeper,
           shared.subspan(first, i - first));
  }
}

}  // namespace kit
