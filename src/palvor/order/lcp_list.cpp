#include "palvor/order/lcp_list.h"

namespace palvor {

void LcpList::linkBefore(int k, int previous, int current) {
  (previous < 0 ? head_ : link(previous).next) = k;
  link(k).next = current;
}

void LcpList::advanceHead() {
  const int k = head_;
  if (!front_.streams[k].advance()) {
    head_ = link(k).next;
    return;
  }
  if (lcpBits(link(k).entry) >= 64) {
    prefetchAhead(front_.text(), front_.streams[k], 2 * kCacheLineWords);
  }
  moveHead(front_.ownEntry(k));
}

void LcpList::moveHead(LcpEntry own) {
  const int k = head_;
  head_ = link(k).next;
  link(k).entry = link(k).own = own;
  insert(k, own);
}

// Inserts stream k, whose suffix is known to share with the one emitted last
// what an entry says.
void LcpList::insert(int k, LcpEntry known) {
  if (head_ < 0) {
    linkBefore(k, -1, -1);
    return;
  }
  Cost& cost = front_.cost;
  int shared = lcpBits(known);
  LcpEntry entry = known;
  int previous = -1;
  int current = head_;
  while (current >= 0) {
    cost.positions++;
    const LcpEntry stored = link(current).entry;
    if (shared > lcpBits(stored)) break;
    if (shared == lcpBits(stored)) {
      const Comparison found = front_.compare(current, front_.suffixOf(current),
                                              k, front_.suffixOf(k), shared);
      cost.add(found);
      cost.addListed(shared, found.common, link(current).own == stored);
      const LcpEntry between = entryOf(found);
      if (found.after()) {
        linkBefore(k, previous, current);
        link(k).entry = stored;
        link(current).entry = between;
        return;
      }
      entry = between;
      shared = found.common;
    }
    previous = current;
    current = link(current).next;
  }
  linkBefore(k, previous, current);
  link(k).entry = entry;
}

}  // namespace palvor
