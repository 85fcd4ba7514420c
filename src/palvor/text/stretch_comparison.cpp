#include "palvor/text/stretch_comparison.h"

namespace palvor {
namespace {

// Stretches that are followed before the strings are read: a few, as there are
// ranks for most.
constexpr uint32_t kFollowed = 64;

WalkingSuffix walkingSuffix(const Stretches& stretches,
                            std::span<const PackedString> strings,
                            SuffixPlace place, uint32_t known) {
  const uint32_t position = place.position + known;
  const uint32_t at = stretches.axisPosition(place.input, position);
  return {strings[place.input], position, at,
          stretches.all() + stretches.stretchAt(at),
          stretches.all() + stretches.size()};
}

StretchParting compareWithin(WalkLimits limits, const Stretches& stretches,
                             std::span<const PackedString> strings,
                             SuffixPlace a, SuffixPlace b, uint32_t known) {
  StretchParting parting = compareWalking(
      walkingSuffix(stretches, strings, a, known),
      walkingSuffix(stretches, strings, b, known), stretches.ranks(), limits);
  parting.bits += 2 * known;
  return parting;
}

bool haveAnchors(const Stretches& stretches, SuffixPlace a, SuffixPlace b) {
  return stretches.holds(a.input) && stretches.holds(b.input);
}

}  // namespace

StretchParting followStretches(const Stretches& stretches,
                               std::span<const PackedString> strings,
                               SuffixPlace a, SuffixPlace b, uint32_t known) {
  if (!haveAnchors(stretches, a, b)) return {2 * known, false, 0};
  return compareWithin({kFollowed, 0}, stretches, strings, a, b, known);
}

StretchParting compareByStretches(const Stretches& stretches,
                                  std::span<const PackedString> strings,
                                  SuffixPlace a, SuffixPlace b,
                                  uint32_t known) {
  if (haveAnchors(stretches, a, b)) {
    return compareWithin({}, stretches, strings, a, b, known);
  }
  const PackedString& stringA = strings[a.input];
  const PackedString& stringB = strings[b.input];
  const uint32_t common =
      known + commonCharacters(stringA, a.position + known, stringB,
                               b.position + known, UINT32_MAX);
  const uint32_t symbolA = symbolAt(stringA, a.position + common);
  const uint32_t symbolB = symbolAt(stringB, b.position + common);
  const int order = symbolA < symbolB ? -1 : symbolA > symbolB ? 1 : 0;
  return {2 * common + (order != 0 ? sharedBits(symbolA, symbolB) : 0), true,
          order};
}

}  // namespace palvor
