#include "palvor/text/stretch_walk.h"

#include "palvor/text/second_key.h"

namespace palvor {
namespace {

// Characters that are read at least before stretches are looked at again: more
// each time that it is in vain.
constexpr uint32_t kReadAtOnce = 64;
constexpr uint32_t kMostAtOnce = 4096;

int orderOf(uint64_t a, uint64_t b) { return a < b ? -1 : a > b ? 1 : 0; }

}  // namespace

StretchParting compareWalking(WalkingSuffix a, WalkingSuffix b,
                              const StretchRanks& ranks, WalkLimits& limits) {
  const uint32_t from = a.position();
  if (a.axisPosition() == b.axisPosition()) return {2 * a.rest(), true, 0};
  uint32_t atOnce = kReadAtOnce;
  for (; limits.stretches > 0; limits.stretches--) {
    const uint32_t passed = 2 * (a.position() - from);
    if (a.anchor() == b.anchor()) {
      const uint32_t agreed = a.agreed();
      const uint32_t parting = a.stretch().parting;
      const uint64_t keyA = secondKey(agreed, parting);
      const uint64_t keyB = secondKey(b.agreed(), b.stretch().parting);
      if (partBeforeRanks(keyA, keyB)) {
        return {passed + commonBitsBeforeRanks(keyA, keyB), true,
                orderOf(keyA, keyB)};
      }
      if (symbolOf(parting) == kEndOfString) {
        return {passed + 2 * agreed, true, 0};
      }
      // An inherited difference.
      if (keyA != keyB) {
        return {passed + bitsBeforeRanks(keyA) +
                    ranks.commonBits(keyRank(keyA), keyRank(keyB)),
                true, orderOf(keyA, keyB)};
      }
      if (ranks.known(keyRank(keyA))) {
        return {passed + 2 * a.rest(), true, 0};
      }
      atOnce = kReadAtOnce;
      a.advance(agreed + 1);
      b.advance(agreed + 1);
      continue;
    }
    if (limits.characters == 0) return {passed, false, 0};
    const uint32_t most =
        std::min(std::max(atOnce, std::min(a.covered(), b.covered())),
                 limits.characters);
    const uint32_t common = commonCharacters(a.string(), a.position(),
                                             b.string(), b.position(), most);
    if (common < most) {
      const uint32_t symbolA = symbolAt(a.string(), a.position() + common);
      const uint32_t symbolB = symbolAt(b.string(), b.position() + common);
      return {passed + 2 * common + sharedBits(symbolA, symbolB), true,
              orderOf(symbolA, symbolB)};
    }
    limits.characters -= common;
    atOnce = std::min(2 * atOnce, kMostAtOnce);
    a.advance(common);
    b.advance(common);
  }
  return {2 * (a.position() - from), false, 0};
}

}  // namespace palvor
