#include "palvor/order/key_search.h"

#include <algorithm>
#include <bit>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "palvor/order/key_search.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "palvor/simd/vectors-inl.h"

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {
namespace {

#if PALVOR_HAS_VECTORS

// Bits 0 to `index` - 1.
HWY_INLINE uint64_t bitsBelow(int index) {
  return index > 0 ? ~uint64_t{0} >> (64 - index) : 0;
}

// Which of kKeysAtOnce keys are below one; a bit for each.
HWY_INLINE uint64_t keysBelow(const int64_t* keys, int64_t key) {
  const hn::ScalableTag<int64_t> tag;
  constexpr int kLanes = static_cast<int>(hn::MaxLanes(tag));
  const auto wanted = hn::Set(tag, key);
  uint64_t below = 0;
  for (int from = 0; from < kKeysAtOnce; from += kLanes) {
    below |= bitsOf(tag, hn::Lt(hn::LoadU(tag, keys + from), wanted)) << from;
  }
  return below;
}

int firstNotBelow(const int64_t* keys, int begin, int end, int room,
                  int64_t key) {
  while (end - begin > kKeysAtOnce) {
    const int half = (end - begin) / 2;
    const bool isBelow = keys[begin + half - 1] < key;
    end = isBelow ? end : begin + half;
    begin = isBelow ? begin + half : begin;
  }
  const int from = std::min(begin, room - kKeysAtOnce);
  const uint64_t asked = bitsBelow(end - from) & ~bitsBelow(begin - from);
  return begin + std::popcount(keysBelow(keys + from, key) & asked);
}

int sum(const int32_t* numbers, int count) {
  const hn::ScalableTag<int32_t> tag;
  constexpr int kLanes = static_cast<int>(hn::MaxLanes(tag));
  auto sums = hn::Zero(tag);
  int from = 0;
  for (; from + kLanes <= count; from += kLanes) {
    sums = hn::Add(sums, hn::Load(tag, numbers + from));
  }
  const auto rest = hn::FirstN(tag, static_cast<size_t>(count - from));
  sums = hn::Add(sums, hn::IfThenElseZero(rest, hn::Load(tag, numbers + from)));
  return hn::GetLane(hn::SumOfLanes(tag, sums));
}

KeySearch searches() { return {&firstNotBelow, &sum}; }

#else

KeySearch searches() { return {nullptr, nullptr}; }

#endif  // PALVOR_HAS_VECTORS

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace palvor {
KeySearch keySearch(Processor processor) {
  return choose(PALVOR_VERSIONS(searches), processor)();
}

}  // namespace palvor

#endif  // HWY_ONCE
