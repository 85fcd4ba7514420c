#include "merge/refill.h"

#include <algorithm>
#include <bit>

#include "output/emitted.h"
#include "run/options.h"
#include "run/values.h"
#include "sources/compare.h"
#include "sources/lcp_streams.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/clocks.h"
#include "support/prefetch.h"

constinit int lcpTime = 0;
constinit bool streamsAscend = true;

namespace {

// The windows of all streams share one table, so that it stays the same size
// for any number of streams. A window is at most as long as its records and
// the string words that they name can stay in the first-level cache together.
constexpr int kTableEntries = 1 << 20;
constexpr int kLongestWindow = 64;
static_assert(kAdmitted % kLongestWindow == 0);

constexpr int kSampling = 64;  // the heap's comparisons for each one timed

// Records between the one to come next and the one whose words are asked for:
// early enough to arrive in time, late enough not to be pushed out again.
constexpr int kAhead = 2;

// Stream k's window begins at k * windowLength, modulo the table: windows of
// one record, each used as soon as it is filled, may share their places.
LcpEntry windowEntries[kTableEntries];

int windowLength = 1;  // records in a window: a power of two

long long lcpRemainder = 0;  // nanoseconds not yet in `lcpTime`

// Asks early for the first word of a suffix that its prefix words don't hold.
[[gnu::always_inline]] inline void prefetchWords(const Suffix& suffix) {
  prefetch(binaryString[inputNumber(suffix)] + ((2 * suffix.pos) >> 5) + 2);
}

// Asks early for the words that the comparison of two records reads first.
[[gnu::always_inline]] inline void prefetchPair(const Suffix& a,
                                                const Suffix& b) {
  if (a.prefix0 != b.prefix0 || a.prefix1 != b.prefix1) return;
  prefetchWords(a);
  prefetchWords(b);
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
  const bool right =
      common < std::min(shorter, 64)
          ? entry == makeLcpEntry(common, 1) && keyBefore < keyAfter
          : lcpBits(entry) >= std::min(shorter, 64);
  if (!right) streamsAscend = false;
}

// Computes the entries of `count` records, the first of which follows
// `currSuffix` in its stream.
void fillWindow(const Suffix* records, int count, LcpEntry* entries) {
  for (int i = 1; i < count; i++) prefetchPair(records[i - 1], records[i]);
  entries[0] = compareNeighbours(currSuffix, records[0]);
  for (int i = 1; i < count; i++) {
    entries[i] = compareNeighbours(records[i - 1], records[i]);
  }
}

LcpEntry computedEntry(int k) {
  const int record = sufps[k] - 1;  // in the stream's buffer
  const int offset = record & (windowLength - 1);
  LcpEntry* entries =
      windowEntries +
      ((static_cast<long>(k) * windowLength + offset) & (kTableEntries - 1));
  // Nobody asks for record 0 of the whole stream, so that window begins at 1.
  const bool second =
      record == 1 && sufos[k] == static_cast<unsigned>(sufls[k]);
  if (offset == 0 || second) {
    const long long start = nanoclock();
    fillWindow(sufbs[k] + record,
               std::min(windowLength - offset, admittedRecords(k) - record),
               entries);
    addLcpTime(nanoclock() - start);
  }
  return *entries;
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

void addLcpTime(long long nanoseconds) {
  lcpRemainder += nanoseconds;
  lcpTime += static_cast<int>(lcpRemainder / 1'000'000);
  lcpRemainder %= 1'000'000;
}

void prepareRefill(int k) {
  const int room = kTableEntries / std::max(k, 1);
  const auto length =
      static_cast<unsigned>(std::clamp(room, 1, kLongestWindow));
  windowLength = static_cast<int>(std::bit_floor(length));
}

void prefetchAhead(int k) {
  const int ahead = sufps[k] + kAhead;
  if (ahead < admittedRecords(k)) prefetchWords(sufbs[k][ahead]);
}

LcpEntry refillEntry(int k) {
  if (Manzini == 0) return computedEntry(k);
  const LcpEntry entry = readEntry(k);
  testReadEntry(currSuffix, sufbs[k][sufps[k] - 1], entry);
  return entry;
}

LcpEntry emittedEntry() {
  static unsigned calls = 0;
  if (calls++ % kSampling != 0)
    return compareNeighbours(lastSuffix, currSuffix);
  const long long start = nanoclock();
  const LcpEntry entry = compareNeighbours(lastSuffix, currSuffix);
  const long long taken = nanoclock() - start - clockCost();
  addLcpTime(kSampling * std::max(taken, 0LL));
  return entry;
}
