// Comparisons between the suffixes of streams, most of them by their anchors,
// without a look at the strings (palvor/text/stretches.h). Results, and what
// they are said to have taken, are those of a comparison of the strings,
// whatever the records claim.

#ifndef PALVOR_ORDER_STREAM_COMPARE_H_
#define PALVOR_ORDER_STREAM_COMPARE_H_

#include "palvor/format/suffix.h"
#include "palvor/order/anchors_ahead.h"
#include "palvor/text/compare.h"

namespace palvor {

class StreamCompare {
 public:
  // `compare` and what the anchors are made from must outlive it.
  StreamCompare(SuffixCompare& compare, const Stretches& stretches,
                const SuffixStreams& streams)
      : anchors(compare.text(), stretches, streams),
        compare_(compare),
        readsStrings_(anchors.areNone()) {}

  const Collection& text() const { return compare_.text(); }

  // Whether strings are read for whatever prefix words don't tell.
  bool readsStrings() const { return readsStrings_; }

  // Tells how many of so many suffixes met others of their prefix words. If few
  // do, their strings are sooner read than their anchors are looked up. What is
  // used until the next time never changes a result.
  void adapt(int64_t met, int64_t suffixes) {
    readsStrings_ = anchors.areNone() || kFewMeet * met < suffixes;
  }

  // Compares a suffix of stream i with one of stream k, which are tested
  // records of their buffers, or of those read before; `known` bits are known
  // to be shared. See SuffixCompare.
  Comparison operator()(int i, const Suffix& a, int k, const Suffix& b,
                        int known) {
    const bool agree = known > 63 || prefixKey(a) == prefixKey(b);
    if (!agree || readsStrings() ||
        text().remainingBits(a) <= AnchorsAhead::kShort ||
        text().remainingBits(b) <= AnchorsAhead::kShort) {
      return compare_(a, b, known);
    }
    return compareByAnchors(anchors.of(i, a), a, anchors.of(k, b), b, known);
  }

  AnchorsAhead anchors;

 private:
  Comparison compareByAnchors(const Anchor& anchorA, const Suffix& a,
                              const Anchor& anchorB, const Suffix& b,
                              int known);

  static constexpr int kFewMeet = 4;  // one of so many

  SuffixCompare& compare_;
  bool readsStrings_;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_STREAM_COMPARE_H_
