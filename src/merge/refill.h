// The refill: a stream's next suffix, and the LCP entry that relates it to the
// suffix just emitted, which is the one before it in the same stream.

#ifndef PALVOR_MERGE_REFILL_H_
#define PALVOR_MERGE_REFILL_H_

#include "sources/lcp_entry.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/prefetch.h"

// Wall-clock milliseconds spent obtaining LCP values, over the whole run.
// Written by refillEntry and emittedEntry alone.
extern int lcpTime;
int getLCPTime();

// Whether each stream's suffixes were found to ascend so far, by their prefix
// words where these differ, the prefix words to end with the suffix, and the
// entries that are read to agree with them.
// Only then do prefix words tell a suffix's place in the list. Cleared by
// refillEntry and mergeFewStreams; never set again.
extern bool streamsAscend;

// Records between the one to come next and the one whose words are asked for:
// early enough to arrive in time, late enough not to be pushed out again.
constexpr int kRecordsAhead = 2;

constexpr int kCacheLineWords = 16;  // of 32 bits

// Asks for the string words behind the prefix words, as many as the ordering
// is likely to read if this record meets one that shares its prefix words in
// another stream.
[[gnu::always_inline]] inline void prefetchStrings(const Suffix& suffix,
                                                   int words) {
  const unsigned* behind =
      binaryString[inputNumber(suffix)] + ((2 * suffix.pos) >> 5) + 2;
  for (int w = 0; w < words; w += kCacheLineWords) prefetch(behind + w);
}

// Does so for a record of stream k that is soon to come.
[[gnu::always_inline]] inline void prefetchAhead(int k, int words) {
  const int ahead = sufps[k] + kRecordsAhead;
  if (ahead < admittedRecords(k)) prefetchStrings(sufbs[k][ahead], words);
}

// The LCP entry of the record that stream k handed out last and the one before
// it, which is `currSuffix`: computed, or with `Manzini` read. To be asked
// once for each record but the stream's first. A common prefix of 2^30 bits or
// more ends the run.
LcpEntry refillEntry(int k);

// The LCP entry of `currSuffix` and `lastSuffix`, the suffix emitted before it,
// for the heap, whose streams come without entries.
LcpEntry emittedEntry();

#endif  // PALVOR_MERGE_REFILL_H_
