#include "merge/many_streams.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "merge/blocks.h"
#include "merge/front.h"
#include "merge/list.h"
#include "merge/walk_count.h"
#include "output/counters.h"
#include "sources/compare.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/prefetch.h"

namespace {

constexpr int kKeyBits = 64;  // that the prefix words hold

// A suffix to be placed.
struct Arrival {
  const Suffix* suffix;
  int64_t key;
  int bits;      // its length
  LcpEntry own;  // with the suffix emitted last
};

// Where it belongs, and the bits that it shares with its neighbours there.
struct Found {
  Place place;
  int withPrevious;  // with the suffix emitted last, if there is none before it
  int withNext;      // -1: not known
};

const Suffix& suffixAt(const Place& place) {
  return *Suffixes[streamAt(place)];
}

// Whether only their strings tell two suffixes of equal keys apart.
bool isLong(int bits) { return bits > kKeyBits; }

// Bits that a suffix shares with that at a place, if their keys differ or one
// of them ends with its key.
int sharedByKey(const Arrival& arrival, const Place& place) {
  const int bits = std::min(arrival.bits, bitsAt(place));
  const auto difference = static_cast<uint64_t>(arrival.key ^ keyAt(place));
  return std::min(bits, std::countl_zero(difference));
}

// Compares with the suffix at a place, which has the same key, without
// counting. Sets `shared`. Whether the arrival belongs before it.
bool belongsBefore(const Arrival& arrival, const Place& place, int known,
                   int& shared) {
  const long long np2Before = np2;
  const double tngbBefore = tngb;
  int firstbit = 0;
  const int before =
      ZEPCompare(&suffixAt(place), arrival.suffix, &firstbit, known);
  np2 = np2Before;
  tngb = tngbBefore;
  shared = comLCP;
  return before != 0;
}

// Finds the place from `from` to `to`, all suffixes there being long and of the
// same key, by halving. The arrival belongs behind the suffix before `from` and
// shares `shared` bits with it.
Found bisect(const Arrival& arrival, const Place& from, const Place& to,
             int shared) {
  Found found = {from, shared, -1};
  const auto goesBefore = [&](const Place& place) {
    const int known = std::min(found.withPrevious, found.withNext);
    int common = 0;
    const bool before =
        belongsBefore(arrival, place, std::max(known, kKeyBits), common);
    (before ? found.withNext : found.withPrevious) = common;
    return before;
  };
  int block = from.block;
  int last = to.index > blockAt(to.block).begin ? to.block : to.block - 1;
  while (block < last) {
    const int middle = (block + last + 1) / 2;
    if (goesBefore({middle, blockAt(middle).begin})) {
      last = middle - 1;
    } else {
      block = middle;
    }
  }
  int index = block == from.block ? from.index : blockAt(block).begin + 1;
  int end = block == to.block ? to.index : blockAt(block).end;
  while (index < end) {
    const int middle = (index + end) / 2;
    if (goesBefore({block, middle})) {
      end = middle;
    } else {
      index = middle + 1;
    }
  }
  found.place = atBegin({block, index});
  return found;
}

// A walk is short where most places are passed by their stored lengths. Where
// it goes from comparison to comparison, halving is shorter.
constexpr int kComparisonsOfAWalk = 2;

// Finds the place from `from` to `to`, all suffixes there being of the same
// key: those that end with it, the shortest first, then the long ones.
Found placeAmongEqualKeys(const Arrival& arrival, const Place& from,
                          const Place& to) {
  Place place = from;
  int shared = from == firstPlace() ? lcpBits(arrival.own)
                                    : sharedByKey(arrival, before(from));
  for (; !(place == to); place = after(place)) {
    const int bits = bitsAt(place);
    if (isLong(bits) || bits > arrival.bits) break;
    shared = bits;
  }
  if (!isLong(arrival.bits)) return {place, shared, -1};

  int comparisons = 0;
  for (; !(place == to); place = after(place)) {
    const int stored = lcpBits(entryAt(place));
    if (shared > stored) break;
    if (shared < stored) continue;
    if (comparisons++ == kComparisonsOfAWalk) {
      return bisect(arrival, place, to, shared);
    }
    int common = 0;
    if (belongsBefore(arrival, place, shared, common)) {
      return {place, shared, common};
    }
    shared = common;
  }
  return {place, shared, -1};
}

Found findPlace(const Arrival& arrival) {
  const Place behind = atBegin(placeBehind(arrival.key));
  if (behind == firstPlace()) return {behind, lcpBits(arrival.own), -1};
  const Place previous = before(behind);
  if (keyAt(previous) == arrival.key) {
    return placeAmongEqualKeys(arrival, atBegin(placeBefore(arrival.key)),
                               behind);
  }
  return {behind, sharedByKey(arrival, previous), -1};
}

void addToCounters(const WalkCount& count) {
  nncmp += count.comparisons;
  nnac += count.found64;
  nnrc += count.found64More;
  nnoc += count.unchanged;
  np2 += count.settled;
  tngb += static_cast<double>(count.words);
}

LcpEntry entryWith(const Arrival& arrival, const Place& place, int shared) {
  const int shorter = std::min(arrival.bits, bitsAt(place));
  return fittingEntry(shared, shared < shorter ? 1 : 0);
}

// Relates an arrival to its neighbours, as a walk to its place would do, and
// counts that walk. Returns its entry.
LcpEntry relate(const Arrival& arrival, Found found) {
  WalkCount count;
  LcpEntry entry = arrival.own;
  if (!(found.place == firstPlace())) {
    entry = entryWith(arrival, before(found.place), found.withPrevious);
  }
  const bool hasNext = isOccupied(found.place);
  if (hasNext && lcpBits(entryAt(found.place)) == found.withPrevious) {
    if (found.withNext < 0) found.withNext = sharedByKey(arrival, found.place);
    countComparison(count, blockAt(found.place.block), found.place.index,
                    arrival.bits, found.withPrevious, found.withNext);
    entry = entryAt(found.place);
    setEntry(found.place, entryWith(arrival, found.place, found.withNext));
  }
  countWalk(count, found.place, arrival.bits, found.withPrevious);
  addToCounters(count);
  nlcmp += rankOf(found.place) + (hasNext ? 1 : 0);
  return entry;
}

// Puts stream k in; `own` relates its suffix to the one emitted last.
void insert(int k, LcpEntry own) {
  const Suffix& suffix = *Suffixes[k];
  const Arrival arrival = {&suffix, prefixKey(suffix), remainingBits(suffix),
                           own};
  Place place = {0, 0};
  LcpEntry entry = own;
  if (blockCount > 0) {
    const Found found = findPlace(arrival);
    entry = relate(arrival, found);
    place = found.place;
  }
  putAt(place, {arrival.key, entry, own, k, arrival.bits, suffix.pos});
}

// The caches hold less than many streams' next records. So asks early for that
// of a stream that will be the head soon.
constexpr int kHeadsAhead = 4;

[[gnu::always_inline]] inline void prefetchSoonNeeded() {
  const Block& block = blockAt(0);
  const int index = block.begin + kHeadsAhead;
  if (index >= block.end) return;
  const int k = block.stream[index];
  prefetch(sufbs[k] + sufps[k]);
}

}  // namespace

void primeManyStreams(int k) { insert(k, 0); }

void moveHeadOfMany(int k, LcpEntry entry) {
  takeFirst();
  insert(k, entry);
  prefetchSoonNeeded();
}

void writeListOfMany() {
  int* link = &Lfst;
  for (Place place = firstPlace(); isOccupied(place); place = after(place)) {
    const int k = streamAt(place);
    LLCP[k] = entryAt(place);
    LOCP[k] = blockAt(place.block).own[place.index];
    *link = k;
    link = &LNXT[k];
  }
  *link = -1;
}
