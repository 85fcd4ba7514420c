#include "merge/many_streams.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "merge/blocks.h"
#include "merge/front.h"
#include "merge/list.h"
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
  int bits;   // its length
  int known;  // bits that it shares with the suffix emitted last
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
  int shared =
      from == firstPlace() ? arrival.known : sharedByKey(arrival, before(from));
  for (; !(place == to); place = after(place)) {
    const int bits = bitsAt(place);
    if (isLong(bits) || bits > arrival.bits) break;
    shared = bits;
  }
  if (!isLong(arrival.bits)) return {place, shared, -1};

  int comparisons = 0;
  for (; !(place == to); place = after(place)) {
    const int stored = sharedAt(place);
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
  if (behind == firstPlace()) return {behind, arrival.known, -1};
  const Place previous = before(behind);
  if (keyAt(previous) == arrival.key) {
    return placeAmongEqualKeys(arrival, atBegin(placeBefore(arrival.key)),
                               behind);
  }
  return {behind, sharedByKey(arrival, previous), -1};
}

// Comparisons that a walk would have made.
struct Walk {
  int comparisons = 0;
  int found64 = 0;      // that found 64 common bits or more
  int found64More = 0;  // ... 64 bits more than were known
  int unchanged = 0;    // against a stream whose entry had not changed
  int settled = 0;      // settled by the prefix words
  long words = 0;       // of the strings, examined by the others
};

// Counts a comparison with the suffix of a stream, `known` bits being known,
// that finds `common` bits.
inline void countComparison(Walk& walk, const Arrival& arrival,
                            const Place& place, int known, int common) {
  const Block& block = blockAt(place.block);
  const int stream = block.stream[place.index];
  walk.comparisons++;
  walk.unchanged += LOCP[stream] == LLCP[stream] ? 1 : 0;
  if (common < kKeyBits) {
    walk.settled++;
    return;
  }
  walk.found64++;
  walk.found64More += common >= known + 64 ? 1 : 0;
  const int shorter = std::min(arrival.bits, block.bits[place.index]);
  if (isSettledByPrefix(shorter, known, common)) {
    walk.settled++;
  } else {
    walk.words += wordsExamined(block.pos[place.index], shorter, known, common);
  }
}

// The last index below `end` whose stored length is not above `shared`; one
// below the block's `begin` if there is none.
inline int lastNotAbove(const Block& block, int end, int shared) {
  int index = end - 1;
  while (index >= block.begin && block.shared[index] > shared) index--;
  return index;
}

// Counts the comparisons with the suffixes before a place, with the last of
// which the arrival shares `shared` bits.
void countWalk(Walk& walk, const Arrival& arrival, const Place& place,
               int shared) {
  for (int number = place.block; number >= 0; number--) {
    Block& block = blockAt(number);
    if (block.least > shared) continue;
    const int end = number == place.block ? place.index : block.end;
    int index = lastNotAbove(block, end, shared);
    // Its suffixes need not be looked through for this again.
    if (index < block.begin && end == block.end) block.least = shared + 1;
    while (index >= block.begin) {
      const int known = block.shared[index];
      countComparison(walk, arrival, {number, index}, known, shared);
      shared = known;
      index = lastNotAbove(block, index, shared);
    }
  }
}

void addToCounters(const Walk& walk) {
  nncmp += walk.comparisons;
  nnac += walk.found64;
  nnrc += walk.found64More;
  nnoc += walk.unchanged;
  np2 += walk.settled;
  tngb += static_cast<double>(walk.words);
}

LcpEntry entryWith(const Arrival& arrival, const Place& place, int shared) {
  const int shorter = std::min(arrival.bits, bitsAt(place));
  return fittingEntry(shared, shared < shorter ? 1 : 0);
}

// Relates an arrival to its neighbours, as a walk to its place would do, and
// counts that walk. Returns its entry; it is LLCP[k] if nothing stands before
// it, and the walk did not compare it.
LcpEntry relate(const Arrival& arrival, int k, Found found) {
  Walk walk;
  LcpEntry entry = LLCP[k];
  if (!(found.place == firstPlace())) {
    entry = entryWith(arrival, before(found.place), found.withPrevious);
  }
  const bool hasNext = isOccupied(found.place);
  if (hasNext && sharedAt(found.place) == found.withPrevious) {
    if (found.withNext < 0) found.withNext = sharedByKey(arrival, found.place);
    countComparison(walk, arrival, found.place, found.withPrevious,
                    found.withNext);
    const int next = streamAt(found.place);
    entry = LLCP[next];
    LLCP[next] = entryWith(arrival, found.place, found.withNext);
    sharedAt(found.place) = found.withNext;
  }
  countWalk(walk, arrival, found.place, found.withPrevious);
  addToCounters(walk);
  nlcmp += rankOf(found.place) + (hasNext ? 1 : 0);
  return entry;
}

// Puts stream k into the list and the blocks; LLCP[k] relates its suffix to the
// one emitted last.
void insert(int k) {
  const Suffix& suffix = *Suffixes[k];
  const Arrival arrival = {&suffix, prefixKey(suffix), remainingBits(suffix),
                           lcpBits(LLCP[k])};
  Place place = {0, 0};
  int previous = -1;
  int next = -1;
  if (blockCount > 0) {
    const Found found = findPlace(arrival);
    LLCP[k] = relate(arrival, k, found);
    place = found.place;
    if (!(place == firstPlace())) previous = streamAt(before(place));
    if (isOccupied(place)) next = streamAt(place);
  }
  LNXT[k] = next;
  (previous < 0 ? Lfst : LNXT[previous]) = k;
  putAt(place, {arrival.key, lcpBits(LLCP[k]), k, arrival.bits, suffix.pos});
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

void primeManyStreams(int k) { insert(k); }

void moveHeadOfMany(int k, LcpEntry entry) {
  LLCP[k] = LOCP[k] = entry;
  dropHeadOfMany();
  insert(k);
  prefetchSoonNeeded();
}

void dropHeadOfMany() {
  addList(-1);
  takeFirst();
}
