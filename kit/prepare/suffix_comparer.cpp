#include "kit/prepare/suffix_comparer.h"

#include <algorithm>
#include <bit>

namespace kit {
namespace {

constexpr size_t kSlotBits = 15;
constexpr size_t kComparedAtOnce = 32;  // characters compared at once

// Characters. Within a block a match is read once; shorter ones are read again
// sooner than looked up.
constexpr size_t kBlock = 1024;
constexpr size_t kShort = 4 * kComparedAtOnce;

}  // namespace

MatchTable::MatchTable() : matches_(size_t{1} << kSlotBits) {}

MatchTable::Match& SuffixComparer::slot(size_t shift, size_t position) {
  uint64_t hash = shift * 0x9E3779B97F4A7C15u;
  hash = (hash ^ position / kBlock) * 0xC2B2AE3D27D4EB4Fu;
  return table_.matches_[hash >> (64 - kSlotBits)];
}

// Where the match of a position with the one `shift` characters on ends: at
// the first character that differs, or at `end`, where one of the inputs does.
size_t SuffixComparer::matchEnd(size_t position, size_t shift, size_t end) {
  const size_t start = position;
  MatchTable::Match* match = nullptr;
  bool known = false;
  size_t found = end;
  while (position < end) {
    if (match == nullptr || position % kBlock < kComparedAtOnce) {
      match = &slot(shift, position);
      known = match->text == text_ && match->shift == shift;
      steps_++;
    }
    if (known && match->from <= position && position < match->to) {
      found = match->to;
      break;
    }
    steps_++;
    const uint64_t unequal =
        charactersAt(words_, position) ^ charactersAt(words_, position + shift);
    if (unequal != 0) {
      found = std::min(
          end, position + static_cast<size_t>(std::countl_zero(unequal)) / 2);
      break;
    }
    position += kComparedAtOnce;
  }
  if (found - start >= kShort) {
    slot(shift, start) = {text_, static_cast<uint32_t>(shift),
                          static_cast<uint32_t>(start),
                          static_cast<uint32_t>(found)};
  }
  return found;
}

SuffixComparer::Result SuffixComparer::compare(size_t first, size_t second,
                                               size_t from) {
  const size_t firstRest = finder_.rest(first);
  const size_t secondRest = finder_.rest(second);
  const size_t rest = std::min(firstRest, secondRest);
  size_t shared = from;
  const size_t soon = std::min(rest, from + kShort);
  while (shared < rest) {
    if (shared >= soon) {
      const size_t low = std::min(first, second);
      const size_t shift = std::max(first, second) - low;
      shared = matchEnd(low + shared, shift, low + rest) - low;
      if (shared >= rest) break;
    }
    steps_++;
    const uint64_t a = charactersAt(words_, first + shared);
    const uint64_t b = charactersAt(words_, second + shared);
    if (a != b) {
      const auto bits = static_cast<uint64_t>(std::countl_zero(a ^ b));
      if (shared + bits / 2 >= rest) break;
      return {2 * shared + bits, a < b};
    }
    shared += kComparedAtOnce;
  }
  return {2 * rest,
          firstRest != secondRest ? firstRest < secondRest : first < second};
}

}  // namespace kit
