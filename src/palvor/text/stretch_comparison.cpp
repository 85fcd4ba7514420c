#include "palvor/text/stretch_comparison.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "palvor/text/second_key.h"

namespace palvor {
namespace {

// Characters that are read at least before stretches are looked at again.
constexpr uint32_t kReadAtOnce = 64;

// How many numbers two lists start alike with. They differ somewhere; seven
// numbers behind that place are read.
uint32_t equalNumbers(const uint32_t* a, const uint32_t* b) {
  uint32_t equal = 0;
  while (true) {
    uint64_t differing[4];
    for (uint32_t pair = 0; pair < 4; pair++) {
      uint64_t x;
      uint64_t y;
      std::memcpy(&x, a + equal + 2 * pair, sizeof x);
      std::memcpy(&y, b + equal + 2 * pair, sizeof y);
      differing[pair] = x ^ y;
    }
    if ((differing[0] | differing[1] | differing[2] | differing[3]) != 0) break;
    equal += 8;
  }
  while (a[equal] == b[equal]) equal++;
  return equal;
}

// A suffix on its way along its stretches.
struct Walker {
  Walker(const Stretches& all, uint32_t at)
      : stretches(&all), position(at), number(all.stretchAt(at)) {}

  const Stretch& stretch() const { return (*stretches)[number]; }
  uint32_t anchor() const {
    return stretch().anchor + (position - stretch().start);
  }
  uint32_t left() const { return stretch().end - position; }
  uint32_t covered() const { return (*stretches)[number + 1].start - position; }
  void advance(uint32_t characters) {
    position += characters;
    while ((*stretches)[number + 1].start <= position) number++;
  }

  const Stretches* stretches;
  uint32_t position;  // on the axis
  uint32_t number;    // of the stretch there
};

// Walks on while anchors are equal. Nothing is found if they are not. `from`
// is the position of `a` where the suffix begins, `endA` that of its end.
StretchParting walkOn(Walker& a, Walker& b, uint32_t from, uint32_t endA) {
  if (a.position == b.position) return {2 * (endA - from), true, 0};
  while (a.anchor() == b.anchor()) {
    const uint32_t passed = a.position - from;
    const uint32_t left = a.left();
    const uint32_t symbols = a.stretch().symbols;
    if (left != b.left() || symbols != b.stretch().symbols) {
      const uint64_t keyA = secondKey(left, symbols);
      const uint64_t keyB = secondKey(b.left(), b.stretch().symbols);
      return {2 * passed + commonBits(keyA, keyB), true, keyA < keyB ? -1 : 1};
    }
    if ((symbols & 7) == kEndOfString) return {2 * (passed + left), true, 0};
    const uint32_t coveredA = a.covered();
    const uint32_t coveredB = b.covered();
    if (coveredA != coveredB) {
      // They agree up to the end and one more, and stretches reach no further.
      const uint32_t both = std::max(coveredA, coveredB);
      a.advance(both);
      b.advance(both);
      continue;
    }
    const uint32_t* alike = a.stretches->alike();
    const uint32_t equal =
        1 + equalNumbers(alike + a.number + 1, alike + b.number + 1);
    a.number += equal;
    b.number += equal;
    a.position = a.stretch().start;
    b.position = b.stretch().start;
    if (a.position > endA) return {2 * (endA - from), true, 0};
  }
  return {2 * (a.position - from), false, 0};
}

// What two symbols that differ, or are both ends, say behind `characters`.
StretchParting partAt(uint32_t characters, uint32_t a, uint32_t b) {
  return {2 * characters + sharedBits(a, b) * (a != b), true,
          a == b  ? 0
          : a < b ? -1
                  : 1};
}

StretchParting readOn(const PackedString& a, uint32_t positionA,
                      const PackedString& b, uint32_t positionB,
                      uint32_t limit) {
  const uint32_t common = commonCharacters(a, positionA, b, positionB, limit);
  if (common == limit) return {2 * common, false, 0};
  return partAt(common, symbolAt(a, positionA + common),
                symbolAt(b, positionB + common));
}

}  // namespace

StretchParting followStretches(const Stretches& stretches,
                               std::span<const PackedString> strings,
                               SuffixPlace a, SuffixPlace b, uint32_t known) {
  if (stretches.empty() || !stretches.holds(a.input) ||
      !stretches.holds(b.input)) {
    return {2 * known, false, 0};
  }
  const uint32_t from = stretches.axisPosition(a.input, a.position);
  Walker walkerA(stretches, from + known);
  Walker walkerB(stretches,
                 stretches.axisPosition(b.input, b.position) + known);
  return walkOn(walkerA, walkerB, from,
                from - a.position + lengthOf(strings[a.input]));
}

StretchParting compareByStretches(const Stretches& stretches,
                                  std::span<const PackedString> strings,
                                  SuffixPlace a, SuffixPlace b,
                                  uint32_t known) {
  const PackedString& stringA = strings[a.input];
  const PackedString& stringB = strings[b.input];
  if (stretches.empty() || !stretches.holds(a.input) ||
      !stretches.holds(b.input)) {
    StretchParting parting = readOn(stringA, a.position + known, stringB,
                                    b.position + known, UINT32_MAX);
    parting.bits += 2 * known;
    return parting;
  }
  const uint32_t from = stretches.axisPosition(a.input, a.position);
  Walker walkerA(stretches, from + known);
  Walker walkerB(stretches,
                 stretches.axisPosition(b.input, b.position) + known);
  while (true) {
    const StretchParting found =
        walkOn(walkerA, walkerB, from, from - a.position + lengthOf(stringA));
    if (found.known) return found;
    const uint32_t passed = found.bits / 2;
    const uint32_t covered = std::min(walkerA.covered(), walkerB.covered());
    StretchParting read =
        readOn(stringA, a.position + passed, stringB, b.position + passed,
               std::max(kReadAtOnce, covered));
    read.bits += 2 * passed;
    if (read.known) return read;
    walkerA.advance(read.bits / 2 - passed);
    walkerB.advance(read.bits / 2 - passed);
  }
}

}  // namespace palvor
