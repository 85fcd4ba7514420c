#include "palvor/text/stretch_numbers.h"

#include <bit>
#include <cstddef>

namespace palvor {

std::vector<uint32_t> numberStretches(std::span<const Stretch> stretches,
                                      uint32_t axisEnd) {
  const auto count = static_cast<uint32_t>(stretches.size()) - 1;
  std::vector<uint32_t> numbers(count + kNumbersBehind, UINT32_MAX);
  const auto extent = [&](uint32_t number) {
    const uint32_t next =
        number + 1 < count ? stretches[number + 1].start : axisEnd;
    return next - stretches[number].start;
  };
  const auto equal = [&](uint32_t a, uint32_t b) {
    const Stretch& x = stretches[a];
    const Stretch& y = stretches[b];
    return x.anchor == y.anchor && x.end - x.start == y.end - y.start &&
           x.symbols == y.symbols && extent(a) == extent(b);
  };
  // The first of each kind, by its hash; empty slots hold `count`.
  std::vector<uint32_t> firsts(std::bit_ceil(2 * size_t{count} + 2), count);
  for (uint32_t n = 0; n < count; n++) {
    const Stretch& stretch = stretches[n];
    uint64_t hash =
        (uint64_t{stretch.anchor} << 32 | extent(n)) * 0x9E3779B97F4A7C15U;
    hash = (hash ^ hash >> 32 ^ (stretch.end - stretch.start) ^
            uint64_t{stretch.symbols} << 32) *
           0xD6E8FEB86659FD93U;
    size_t slot = (hash ^ hash >> 32) & (firsts.size() - 1);
    while (firsts[slot] != count && !equal(firsts[slot], n)) {
      slot = (slot + 1) & (firsts.size() - 1);
    }
    if (firsts[slot] == count) firsts[slot] = n;
    numbers[n] = firsts[slot];
  }
  return numbers;
}

}  // namespace palvor
