#include "palvor/order/block_order.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "palvor/simd/prefetch.h"

namespace palvor {
namespace {

constexpr int kKeyBits = 64;  // that the prefix words hold

// Whether only their strings tell two suffixes of equal keys apart.
bool isLong(int bits) { return bits > kKeyBits; }

}  // namespace

// A suffix to be placed.
struct BlockOrder::Arrival {
  int stream;
  const Suffix* suffix;
  int64_t key;
  int bits;      // its length
  LcpEntry own;  // with the suffix emitted last
};

// Where it belongs, and the bits that it shares with its neighbours there.
struct BlockOrder::Found {
  Place place;
  int withPrevious;  // with the suffix emitted last, if there is none before it
  int withNext;      // -1: not known
};

// Bits that a suffix shares with that at a place, if their keys differ or one
// of them ends with its key.
int BlockOrder::sharedByKey(const Arrival& arrival, const Place& place) const {
  const int bits = std::min(arrival.bits, blocks_.bitsAt(place));
  const auto difference =
      static_cast<uint64_t>(arrival.key ^ blocks_.keyAt(place));
  return std::min(bits, std::countl_zero(difference));
}

// Compares with the suffix at a place, which has the same key. What this takes
// is not counted: a walk makes other comparisons. Sets `shared`. Whether the
// arrival belongs before it.
bool BlockOrder::belongsBefore(const Arrival& arrival, const Place& place,
                               int known, int& shared) {
  const int listed = blocks_.streamAt(place);
  const Comparison found = front_.compare(
      listed, front_.suffixOf(listed), arrival.stream, *arrival.suffix, known);
  shared = found.common;
  return found.after();
}

// The first place from `from` to `to` that an arrival goes before, by halving;
// it goes before all places behind one that it goes before.
template <typename GoesBefore>
Place BlockOrder::halve(const Place& from, const Place& to,
                        GoesBefore goesBefore) const {
  int block = from.block;
  int last = to.index > blocks_.block(to.block).begin ? to.block : to.block - 1;
  while (block < last) {
    const int middle = (block + last + 1) / 2;
    if (goesBefore(Place{middle, blocks_.block(middle).begin})) {
      last = middle - 1;
    } else {
      block = middle;
    }
  }
  int index = block == from.block ? from.index : blocks_.block(block).begin + 1;
  int end = block == to.block ? to.index : blocks_.block(block).end;
  while (index < end) {
    const int middle = (index + end) / 2;
    if (goesBefore(Place{block, middle})) {
      end = middle;
    } else {
      index = middle + 1;
    }
  }
  return blocks_.atBegin({block, index});
}

// Finds the place from `from` to `to`, all suffixes there being long and of the
// same key. The arrival belongs behind the suffix before `from` and shares
// `shared` bits with it.
BlockOrder::Found BlockOrder::bisect(const Arrival& arrival, const Place& from,
                                     const Place& to, int shared) {
  Found found = {from, shared, -1};
  found.place = halve(from, to, [&](const Place& place) {
    const int known = std::min(found.withPrevious, found.withNext);
    int common = 0;
    const bool before =
        belongsBefore(arrival, place, std::max(known, kKeyBits), common);
    (before ? found.withNext : found.withPrevious) = common;
    return before;
  });
  return found;
}

const Anchor& BlockOrder::anchorOf(int k) {
  std::optional<Anchor>& anchor = anchors_[static_cast<size_t>(k)];
  if (!anchor) anchor = front_.compare.anchors.of(k, front_.suffixOf(k));
  return *anchor;
}

// The same by anchors: by the second keys, as long as these are all that is
// needed. False if they are not.
bool BlockOrder::findByAnchors(const Arrival& arrival, const Place& from,
                               const Place& to, Found& found) {
  if (front_.compare.readsStrings() || front_.readsEntries()) return false;
  const Anchor own = anchorOf(arrival.stream);
  if (own.position == Axis::kNowhere) return false;
  const AnchorsAhead& anchors = front_.compare.anchors;
  bool tells = true;
  int next = -1;
  int previous = -1;
  found.place = halve(from, to, [&](const Place& place) {
    const int k = blocks_.streamAt(place);
    const Anchor& listed = anchorOf(k);
    if (listed.position != own.position) tells = false;
    if (listed.key == own.key && !anchors.stretches().equalIfAlike(own.key)) {
      tells = false;
    }
    const bool before = own.key < listed.key;
    (before ? next : previous) = k;
    return before;
  });
  if (!tells) return false;
  const auto sharedWith = [&](int k) {
    const int shorter =
        std::min(arrival.bits, front_.text().remainingBits(front_.suffixOf(k)));
    return anchors.sharedBits(anchorOf(k).key, own.key, shorter);
  };
  if (previous >= 0) found.withPrevious = sharedWith(previous);
  if (next >= 0) found.withNext = sharedWith(next);
  const auto isReliable = [](int k, int shared) {
    return k < 0 || shared >= AnchorsAhead::kLeastShared;
  };
  return isReliable(previous, found.withPrevious) &&
         isReliable(next, found.withNext);
}

// A walk is short where most places are passed by their stored lengths. Where
// it goes from comparison to comparison, halving is shorter.
constexpr int kComparisonsOfAWalk = 2;

// Finds the place from `from` to `to`, all suffixes there being of the same
// key: those that end with it, the shortest first, then the long ones.
BlockOrder::Found BlockOrder::findAmongEqualKeys(const Arrival& arrival,
                                                 const Place& from,
                                                 const Place& to) {
  Place place = from;
  int shared = from == blocks_.first()
                   ? lcpBits(arrival.own)
                   : sharedByKey(arrival, blocks_.before(from));
  const int passed = std::min(arrival.bits, kKeyBits);
  if (blocks_.bitsAt(from) <= passed) {
    place = halve(from, to, [&](const Place& other) {
      return blocks_.bitsAt(other) > passed;
    });
    shared = blocks_.bitsAt(blocks_.before(place));
  }
  if (!isLong(arrival.bits)) return {place, shared, -1};

  Found found = {place, shared, -1};
  if (findByAnchors(arrival, place, to, found)) return found;
  int comparisons = 0;
  for (; !(place == to); place = blocks_.after(place)) {
    const int stored = lcpBits(blocks_.entryAt(place));
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

BlockOrder::Found BlockOrder::find(const Arrival& arrival) {
  const Place behind = blocks_.atBegin(blocks_.behindKey(arrival.key));
  if (behind == blocks_.first()) return {behind, lcpBits(arrival.own), -1};
  const Place previous = blocks_.before(behind);
  if (blocks_.keyAt(previous) == arrival.key) {
    return findAmongEqualKeys(
        arrival, blocks_.atBegin(blocks_.beforeKey(arrival.key)), behind);
  }
  return {behind, sharedByKey(arrival, previous), -1};
}

LcpEntry BlockOrder::entryWith(const Arrival& arrival, const Place& place,
                               int shared) const {
  const int shorter = std::min(arrival.bits, blocks_.bitsAt(place));
  return fittingEntry(shared, shared < shorter);
}

// Relates an arrival to its neighbours, as a walk to its place would do, and
// counts that walk. Returns its entry.
LcpEntry BlockOrder::relate(const Arrival& arrival, Found found) {
  Cost& cost = front_.cost;
  LcpEntry entry = arrival.own;
  if (!(found.place == blocks_.first())) {
    entry = entryWith(arrival, blocks_.before(found.place), found.withPrevious);
  }
  const bool hasNext = blocks_.isOccupied(found.place);
  if (hasNext && lcpBits(blocks_.entryAt(found.place)) == found.withPrevious) {
    if (found.withNext < 0) found.withNext = sharedByKey(arrival, found.place);
    addComparison(cost, blocks_.block(found.place.block), found.place.index,
                  arrival.bits, found.withPrevious, found.withNext);
    entry = blocks_.entryAt(found.place);
    blocks_.setEntry(found.place,
                     entryWith(arrival, found.place, found.withNext));
  }
  walkCost_(cost, blocks_, found.place, arrival.bits, found.withPrevious);
  cost.positions += blocks_.rankOf(found.place) + (hasNext ? 1 : 0);
  return entry;
}

// Puts stream k in; `own` relates its suffix to the one emitted last.
void BlockOrder::insert(int k, LcpEntry own) {
  anchors_[static_cast<size_t>(k)].reset();
  const Suffix& suffix = front_.suffixOf(k);
  const Arrival arrival = {k, &suffix, prefixKey(suffix),
                           front_.text().remainingBits(suffix), own};
  Place place = {0, 0};
  LcpEntry entry = own;
  if (!isEmpty()) {
    const Found found = find(arrival);
    entry = relate(arrival, found);
    place = found.place;
  }
  blocks_.put(place, {arrival.key, entry, own, k, arrival.bits, suffix.pos});
}

// The caches hold less than many streams' next records. So asks early for that
// of a stream that will be the head soon.
constexpr int kHeadsAhead = 4;

[[gnu::always_inline]] static inline void prefetchSoonNeeded(
    const KeyBlocks& blocks, const SuffixStreams& streams) {
  if (blocks.count() == 0) return;
  const KeyBlocks::Block& block = blocks.block(0);
  const int index = block.begin + kHeadsAhead;
  if (index < block.end) prefetch(streams[block.stream[index]].current() + 1);
}

void BlockOrder::advanceHead() {
  const int k = head();
  if (!front_.streams[k].advance()) {
    blocks_.takeFirst();
    return;
  }
  if (front_.compare.readsStrings() && lcpBits(headEntry()) >= 64) {
    prefetchAhead(front_.text(), front_.streams[k], 2 * kCacheLineWords);
  }
  const LcpEntry own = front_.ownEntry(k);
  if (!front_.ascends) {
    handOver();
    list_.moveHead(own);
    return;
  }
  blocks_.takeFirst();
  insert(k, own);
  prefetchSoonNeeded(blocks_, front_.streams);
}

void BlockOrder::handOver() {
  if (isEmpty()) return;
  for (int number = blocks_.count() - 1; number >= 0; number--) {
    const KeyBlocks::Block& block = blocks_.block(number);
    for (int i = block.end - 1; i >= block.begin; i--) {
      list_.putFirst(block.stream[i], block.entry[i], block.own[i]);
    }
  }
  blocks_.clear();
}

}  // namespace palvor
