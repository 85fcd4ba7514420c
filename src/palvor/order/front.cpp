#include "palvor/order/front.h"

#include <algorithm>
#include <bit>

namespace palvor {

LcpTime::LcpTime() : clockCost_(1'000'000) {
  for (int i = 0; i < 16; i++) {
    const int64_t start = wallNanoseconds();
    clockCost_ = std::min(clockCost_, wallNanoseconds() - start);
  }
}

void LcpTime::addSample(int64_t start) {
  const int64_t taken = wallNanoseconds() - start - clockCost_;
  nanoseconds_ += kSampling * std::max<int64_t>(taken, 0);
}

LcpEntry Front::compareNeighbours(int i, const Suffix& before, int k,
                                  const Suffix& after) {
  const Comparison found = compare(i, before, k, after, 0);
  cost.add(found);
  if (found.after()) ascends = false;
  return entryOf(found);
}

LcpEntry Front::timedEntry(int i, const Suffix& before, int k,
                           const Suffix& after) {
  if (!lcpTime.isSampled()) return compareNeighbours(i, before, k, after);
  const int64_t start = wallNanoseconds();
  const LcpEntry entry = compareNeighbours(i, before, k, after);
  lcpTime.addSample(start);
  return entry;
}

// Handing out an entry of the buffer takes next to nothing: what costs time,
// and is timed, is reading the next block.
LcpEntry Front::readEntry(int k) {
  if (!entries[k].isUsedUp()) return entries[k].take(streams[k]);
  const int64_t start = wallNanoseconds();
  const LcpEntry entry = entries[k].take(streams[k]);
  lcpTime.add(start);
  return entry;
}

// Tests an entry that was read against the prefix words.
void Front::testReadEntry(const Suffix& before, const Suffix& after,
                          LcpEntry entry) {
  const int64_t keyBefore = prefixKey(before);
  const int64_t keyAfter = prefixKey(after);
  const int shorter =
      std::min(text().remainingBits(before), text().remainingBits(after));
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
  if (!right) ascends = false;
}

LcpEntry Front::ownEntry(int k) {
  const Suffix& before = *streams[k].previous();
  const Suffix& suffix = *streams[k].current();
  if (text().prefixGoesOn(suffix)) ascends = false;
  if (!readsEntries()) return timedEntry(k, before, k, suffix);
  const LcpEntry entry = readEntry(k);
  testReadEntry(before, suffix, entry);
  return entry;
}

LcpEntry Front::emittedEntry(int i, const Suffix& before, int k,
                             const Suffix& after) {
  return timedEntry(i, before, k, after);
}

}  // namespace palvor
