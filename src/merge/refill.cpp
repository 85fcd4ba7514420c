#include "merge/refill.h"

#include <algorithm>
#include <bit>

#include "merge/front.h"
#include "output/emitted.h"
#include "run/options.h"
#include "run/values.h"
#include "sources/compare.h"
#include "sources/lcp_streams.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/clocks.h"

constinit int lcpTime = 0;
constinit bool streamsAscend = true;

namespace {

constexpr int kSampling = 64;  // comparisons for each one timed

long long lcpRemainder = 0;  // nanoseconds not yet in `lcpTime`

// Nothing is lost to rounding.
void addLcpTime(long long nanoseconds) {
  lcpRemainder += nanoseconds;
  lcpTime += static_cast<int>(lcpRemainder / 1'000'000);
  lcpRemainder %= 1'000'000;
}

// Nanoseconds that a clock reading itself adds to what is timed.
long long clockCost() {
  static const long long cost = [] {
    long long least = 1'000'000;
    for (int i = 0; i < 16; i++) {
      const long long start = nanoclock();
      least = std::min(least, nanoclock() - start);
    }
    return least;
  }();
  return cost;
}

inline LcpEntry compareNeighbours(const Suffix& before, const Suffix& after) {
  int firstbit = 0;
  if (compareSuffixes(&before, &after, &firstbit, 0) != 0)
    streamsAscend = false;
  return comparedEntry(firstbit);
}

// Tests an entry that was read against the prefix words.
void testReadEntry(const Suffix& before, const Suffix& after, LcpEntry entry) {
  const int64_t keyBefore = prefixKey(before);
  const int64_t keyAfter = prefixKey(after);
  const int shorter = std::min(remainingBits(before), remainingBits(after));
  const int common =
      std::countl_zero(static_cast<uint64_t>(keyBefore ^ keyAfter));
  bool right;
  if (common < std::min(shorter, 64)) {
    right = entry == makeLcpEntry(common, 1) && keyBefore < keyAfter;
  } else if (shorter <= 64) {
    right = entry == makeLcpEntry(shorter, 0);
  } else {
    right = lcpBits(entry) >= 64 && lcpBits(entry) <= shorter;
  }
  if (!right) streamsAscend = false;
}

// A pair of clock readings takes longer than most comparisons. So one in
// kSampling is timed, and stands for them all.
LcpEntry timedEntry(const Suffix& before, const Suffix& after) {
  static unsigned calls = 0;
  if (calls++ % kSampling != 0) return compareNeighbours(before, after);
  const long long start = nanoclock();
  const LcpEntry entry = compareNeighbours(before, after);
  const long long taken = nanoclock() - start - clockCost();
  addLcpTime(kSampling * std::max(taken, 0LL));
  return entry;
}

// Handing out an entry of the buffer takes next to nothing: what costs time,
// and is timed, is reading the next block.
LcpEntry readEntry(int k) {
  if (!lcpBlockUsedUp(k)) return getNextLCP(k);
  const long long start = nanoclock();
  const LcpEntry entry = getNextLCP(k);
  addLcpTime(nanoclock() - start);
  return entry;
}

}  // namespace

int getLCPTime() { return lcpTime; }

LcpEntry refillEntry(int k) {
  const Suffix& suffix = *Suffixes[k];
  if (prefixGoesOn(suffix)) streamsAscend = false;
  if (Manzini == 0) return timedEntry(currSuffix, suffix);
  const LcpEntry entry = readEntry(k);
  testReadEntry(currSuffix, suffix, entry);
  return entry;
}

LcpEntry emittedEntry() { return timedEntry(lastSuffix, currSuffix); }
