// The merge list: the streams linked in ascending order of their current
// suffixes, each with the LCP entry of its suffix and its predecessor's. This
// is the ordering of an LCP-aware k-way merge; the others stand in for it, and
// leave the same entries and counts.
//
// A suffix s that is known to share L bits with the suffix emitted last finds
// its place by walking the list from its head and looking at the stored
// lengths alone, as long as they differ from L. With streams a, b, c:
//
//   head -> a -> b -> c         stored length of each with its predecessor
//           8    10   4         (of a: with the suffix emitted last)
//
//   L = 9: above 8, so s shares more with the suffix before a than a does:
//          s goes before a.
//   L = 6: below 8 and 10: a and b leave s behind later than s leaves them,
//          so they sort before s, and share just 6 bits with it; above 4, so
//          s goes between b and c.
//   L = 8: equal: s and a share 8 bits at least, and only a comparison tells
//          which sorts first, and how much they share.
//
// Equal suffixes leave the list in the order in which they entered it.

#ifndef PALVOR_ORDER_LCP_LIST_H_
#define PALVOR_ORDER_LCP_LIST_H_

#include <cstddef>
#include <vector>

#include "palvor/format/lcp_entry.h"
#include "palvor/order/front.h"

namespace palvor {

class LcpList {
 public:
  explicit LcpList(Front& front)
      : front_(front), links_(static_cast<size_t>(front.streams.count())) {}

  // A stream in the list.
  struct Link {
    int next;        // stream; -1 ends the list
    LcpEntry entry;  // with the predecessor's suffix; of the first stream: with
                     // the suffix emitted last
    LcpEntry own;    // as it was when the suffix was taken from its stream
  };

  bool isEmpty() const { return head_ < 0; }
  // The stream whose current suffix is the smallest, and its entry. The list
  // must not be empty.
  int head() const { return head_; }
  LcpEntry headEntry() const { return linkOf(head_).entry; }

  // Puts a stream in whose suffix nothing is known of.
  void prime(int k) { insert(k, 0); }

  // Moves the head to the place of its stream's new suffix, or takes it out if
  // the stream has ended.
  void advanceHead();

  // Moves the head to the place of its stream's new suffix, whose entry relates
  // it to the suffix emitted last.
  void moveHead(LcpEntry own);

  const Link& linkOf(int k) const { return links_[static_cast<size_t>(k)]; }

  // The list anew, to be filled from its end.
  void clear() { head_ = -1; }
  void putFirst(int k, LcpEntry entry, LcpEntry own) {
    link(k) = {head_, entry, own};
    head_ = k;
  }

 private:
  Link& link(int k) { return links_[static_cast<size_t>(k)]; }
  void linkBefore(int k, int previous, int current);
  void insert(int k, LcpEntry known);

  Front& front_;
  std::vector<Link> links_;
  int head_ = -1;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_LCP_LIST_H_
