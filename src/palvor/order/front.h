// The front of the merge: the streams with their current suffixes, and how a
// stream's next suffix relates to the one just emitted.

#ifndef PALVOR_ORDER_FRONT_H_
#define PALVOR_ORDER_FRONT_H_

#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/format/suffix.h"
#include "palvor/io/clocks.h"
#include "palvor/order/cost.h"
#include "palvor/order/stream_compare.h"
#include "palvor/simd/prefetch.h"
#include "palvor/stream/lcp_stream.h"
#include "palvor/stream/suffix_stream.h"
#include "palvor/text/compare.h"

namespace palvor {

// The time that obtaining common prefixes takes. A pair of clock readings takes
// longer than most comparisons: so one in kSampling is timed, and stands for
// them all.
class LcpTime {
 public:
  static constexpr int kSampling = 64;

  LcpTime();

  // Wall-clock milliseconds so far.
  int64_t milliseconds() const { return nanoseconds_ / 1'000'000; }

  bool isSampled() { return calls_++ % kSampling == 0; }
  // Adds what a sampled comparison took that began at a reading of
  // wallNanoseconds, for all that it stands for.
  void addSample(int64_t start);
  // Adds what took from `start` until now.
  void add(int64_t start) { nanoseconds_ += wallNanoseconds() - start; }

 private:
  int64_t nanoseconds_ = 0;
  uint32_t calls_ = 0;
  int64_t clockCost_;  // that a reading itself adds to what is timed
};

class Front {
 public:
  // All of them must outlive the front. `entries` has a stream for each suffix
  // stream if common prefixes are read.
  Front(SuffixStreams& suffixStreams, LcpStreams& entryStreams,
        StreamCompare& streamCompare, Cost& countedCost)
      : streams(suffixStreams),
        entries(entryStreams),
        compare(streamCompare),
        cost(countedCost) {}

  const Collection& text() const { return compare.text(); }
  const Suffix& suffixOf(int k) { return *streams[k].current(); }
  bool readsEntries() const { return entries.areRead(); }

  // The LCP entry of stream k's current suffix and the one before it in the
  // stream, which was emitted last: computed, or read. To be asked once for
  // each record but the stream's first. Fails for a common prefix of 2^30 bits
  // or more.
  LcpEntry ownEntry(int k);

  // The LCP entry of two suffixes emitted one after the other, for an ordering
  // that keeps none.
  //   i, k  the streams that they are of
  LcpEntry emittedEntry(int i, const Suffix& before, int k,
                        const Suffix& after);

  SuffixStreams& streams;
  LcpStreams& entries;
  StreamCompare& compare;
  Cost& cost;
  LcpTime lcpTime;

  // Whether each stream's suffixes were found to ascend so far, by their prefix
  // words where these differ, the prefix words to end with the suffix, and the
  // entries that are read to agree with them. Only then do prefix words tell a
  // suffix's place in the order. Cleared by whoever finds otherwise; never set
  // again.
  bool ascends = true;

 private:
  LcpEntry compareNeighbours(int i, const Suffix& before, int k,
                             const Suffix& after);
  LcpEntry timedEntry(int i, const Suffix& before, int k, const Suffix& after);
  LcpEntry readEntry(int k);
  void testReadEntry(const Suffix& before, const Suffix& after, LcpEntry entry);
};

// Records between the one to come next and the one whose words are asked for:
// early enough to arrive in time, late enough not to be pushed out again.
constexpr int kRecordsAhead = 2;

constexpr int kCacheLineWords = 16;  // of 32 bits

// Asks for the string words behind the prefix words, as many as the ordering
// is likely to read if this record meets one that shares its prefix words in
// another stream.
[[gnu::always_inline]] inline void prefetchStrings(const Collection& text,
                                                   const Suffix& suffix,
                                                   int words) {
  const uint32_t* behind =
      text[inputNumber(suffix)].words + ((2 * suffix.pos) >> 5) + 2;
  for (int w = 0; w < words; w += kCacheLineWords) prefetch(behind + w);
}

// Does so for a record of a stream that is soon to come.
[[gnu::always_inline]] inline void prefetchAhead(const Collection& text,
                                                 const SuffixStream& stream,
                                                 int words) {
  const Suffix* ahead = stream.current() + 1 + kRecordsAhead;
  if (ahead < stream.testedEnd()) prefetchStrings(text, *ahead, words);
}

}  // namespace palvor

#endif  // PALVOR_ORDER_FRONT_H_
