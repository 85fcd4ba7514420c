#include "merge/few_streams.h"

#include "support/intrinsics.h"
#include "support/processor.h"

#if defined(PALVOR_HAS_VERSIONS)

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "merge/emission.h"
#include "merge/front.h"
#include "merge/list.h"
#include "merge/refill.h"
#include "output/array.h"
#include "output/counters.h"
#include "output/emitted.h"
#include "run/options.h"
#include "sources/compare.h"
#include "sources/lcp_streams.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"

namespace {

// The rows: the listed suffixes in order, by their keys (prefixKey) and states:
//
//   bits 63..32  entry, as LLCP would hold it
//   bit 31       whether it is what LOCP holds
//   bits 14..8   the suffix's length in bits, 127 if that is 64 or more
//   bits 7..0    stream
//
// While the head is moved, its place 0 holds the suffix emitted last. Behind
// the last suffix stand the largest key and entry, and a long suffix.
alignas(64) int64_t listedKeys[kFewStreams + 1];
alignas(64) int64_t listedStates[kFewStreams + 1];
int listedCount = 0;

// Per stream, the key of the record that it hands out next, known before it is
// asked for; anything, if that record has yet to be read.
int64_t upcomingKeys[kFewStreams];

// Per stream, the last record of its buffer that is tested.
const Suffix* lastTested[kFewStreams];

// Suffixes on their way to the tree, with their entries.
constexpr int kBatch = 256;
Suffix batchSuffixes[kBatch];
LcpEntry batchEntries[kBatch];

// Excerpts: per stream, words of its listed suffix's string, from a bit of the
// suffix on. The first of them lies within the prefix words: a comparison that
// knows these begins at a word of the string, up to 31 bits before their end.
constexpr int kExcerptWords = 128;
constexpr int kExcerptStart = 32;                                // bits
constexpr int kExcerptEnd = kExcerptStart + 32 * kExcerptWords;  // bits
alignas(64) uint32_t excerpts[kFewStreams][kExcerptWords];

// Per stream, the suffix that its excerpt belongs to (placeOf).
uint64_t excerptPlaces[kFewStreams];

// Whether the suffixes that excerpts did not tell apart last time went on
// alike for less than this. Otherwise the next two are likely to, too.
constexpr int kExcerptsHelp = 4 * kExcerptEnd;  // bits
bool excerptsHelp = true;

// Whether a listed suffix may be shorter than 64 bits.
bool mayHoldShort = false;

constexpr int64_t kLargestKey = std::numeric_limits<int64_t>::max();

constexpr int kEntryShift = 32;
constexpr int kCommonShift = 33;  // of the length in the entry
constexpr int64_t kUnchanged = int64_t{1} << 31;
constexpr int kLengthShift = 8;
constexpr int64_t kLong = 127;  // 64 bits or more
constexpr int64_t kStream = 255;

// What stands in a state beside the entry: stream and length.
constexpr int64_t kSuffixBits = kUnchanged - 1;

constexpr int64_t makeState(LcpEntry entry, int64_t suffixBits) {
  return static_cast<int64_t>(entry) << kEntryShift | suffixBits;
}
constexpr int streamOf(int64_t state) {
  return static_cast<int>(state & kStream);
}
constexpr LcpEntry entryOf(int64_t state) {
  return static_cast<LcpEntry>(state >> kEntryShift);
}
constexpr bool isShort(int64_t state) {
  return (state >> kLengthShift & kLong) < 64;
}

[[gnu::always_inline]] inline int64_t suffixBitsOf(int stream, int length) {
  return (length < 64 ? length : kLong) << kLengthShift | stream;
}

// Tells a suffix from all others, and from 0.
[[gnu::always_inline]] inline uint64_t placeOf(const Suffix& suffix) {
  return uint64_t{suffix.pos} << 32 | (inputNumber(suffix) + 1);
}

// The state of a listed suffix with this entry.
inline int64_t stateOf(LcpEntry entry, int64_t suffixBits) {
  const bool unchanged = entry == LOCP[streamOf(suffixBits)];
  return makeState(entry, suffixBits) | (unchanged ? kUnchanged : 0);
}

// A bit for each place.
template <int kRoom>
using PlacesOf = std::conditional_t<kRoom <= 32, uint32_t, uint64_t>;

// How many places these are.
template <typename Places>
[[gnu::always_inline]] inline unsigned countOf(Places places) {
  return static_cast<unsigned>(std::popcount(places));
}

// Comparisons that a long suffix's own entry takes, if its prefix words tell
// it.
[[gnu::always_inline]] inline unsigned ownComparisons() {
  return Manzini == 0 ? 1 : 0;
}

// The entry of two suffixes that part within the prefix words.
[[gnu::always_inline]] inline LcpEntry entryOfKeys(int64_t a, int64_t b) {
  return makeLcpEntry(std::countl_zero(static_cast<uint64_t>(a ^ b)), 1);
}

// Learns what stream k hands out next.
[[gnu::always_inline]] inline void lookAhead(int k) {
  lastTested[k] = sufbs[k] + admittedRecords(k) - 1;
  upcomingKeys[k] = prefixKey(sufbs[k][std::min(sufps[k], sufls[k] - 1)]);
}

// The key of a record that stream k has just handed out.
[[gnu::always_inline]] inline int64_t takeKey(int k, const Suffix& suffix) {
  const bool readAnew = sufps[k] == 1;
  const int64_t key = readAnew ? prefixKey(suffix) : upcomingKeys[k];
  lookAhead(k);
  return key;
}

// Looks for short suffixes in the list.
void lookForShort() {
  mayHoldShort = std::any_of(listedStates, listedStates + listedCount, isShort);
}

// Fills the rows from the list. Records whose prefix words contradict their
// length can stand there in an order that is not that of the keys: then it is
// the list that goes on.
void takeUpList() {
  std::ranges::fill(listedKeys, kLargestKey);
  std::ranges::fill(listedStates, makeState(std::numeric_limits<int>::max(),
                                            kLong << kLengthShift));
  listedCount = 0;
  for (int k = Lfst; k >= 0; k = LNXT[k]) {
    const Suffix& suffix = *Suffixes[k];
    const int place = listedCount++;
    listedKeys[place] = prefixKey(suffix);
    listedStates[place] =
        stateOf(LLCP[k], suffixBitsOf(k, remainingBits(suffix)));
    lookAhead(k);
    if (place > 0 && listedKeys[place - 1] > listedKeys[place]) {
      streamsAscend = false;
    }
  }
  lookForShort();
}

// Writes the list anew. LOCP is kept up anyway.
void writeList() {
  Lfst = -1;
  for (int place = listedCount - 1; place >= 0; place--) {
    const int k = streamOf(listedStates[place]);
    LLCP[k] = entryOf(listedStates[place]);
    LNXT[k] = Lfst;
    Lfst = k;
  }
}

[[gnu::noinline]] void dropHead() {
  std::copy(listedKeys + 1, listedKeys + kFewStreams + 1, listedKeys);
  std::copy(listedStates + 1, listedStates + kFewStreams + 1, listedStates);
  listedCount--;
}

// Where the head goes, and what changes.
struct Move {
  int place = 1;         // it goes before the suffix there
  LcpEntry entry = 0;    // with the suffix before it
  bool changes = false;  // the suffix at that place has another entry
  LcpEntry nextEntry = 0;
};

// Finds the head's place by a walk of all others. `own` is its new suffix's
// entry with the suffix emitted last.
[[gnu::noinline]] Move findByWalk(const Suffix& suffix, LcpEntry own) {
  Move move;
  int shared = lcpBits(own);
  int firstbit = lcpFirstbit(own);
  for (; move.place < listedCount; move.place++) {
    nlcmp++;
    const LcpEntry stored = entryOf(listedStates[move.place]);
    if (shared > lcpBits(stored)) break;
    if (shared < lcpBits(stored)) continue;
    const int stream = streamOf(listedStates[move.place]);
    const int after =
        compareSuffixes(Suffixes[stream], &suffix, &firstbit, shared);
    nncmp++;
    if (comLCP >= 64) nnac++;
    if (comLCP >= shared + 64) nnrc++;
    if (LOCP[stream] == stored) nnoc++;
    if (after != 0) {
      move.changes = true;
      move.nextEntry = comparedEntry(firstbit);
      move.entry = stored;
      return move;
    }
    move.entry = comparedEntry(firstbit);
    shared = comLCP;
  }
  move.entry = makeLcpEntry(shared, firstbit);
  return move;
}

// Each of these uses those before it.
// clang-format off
PALVOR_AVX512_BEGIN
namespace avx512 {
#include "merge/groups_avx512.h"
#include "merge/rows_avx512.h"
#include "merge/excerpts_avx512.h"
#include "merge/excerpts.h"
#include "merge/few_streams_loop.h"
}  // namespace avx512
PALVOR_END

PALVOR_AVX2_BEGIN
namespace avx2 {
#include "merge/rows_avx2.h"
#include "merge/excerpts_avx2.h"
#include "merge/excerpts.h"          // NOLINT(readability-duplicate-include)
#include "merge/few_streams_loop.h"  // NOLINT(readability-duplicate-include)
}  // namespace avx2
PALVOR_END
// clang-format on

}  // namespace

bool canMergeFewStreams() { return processor() >= Processor::kAvx2; }

void mergeFewStreams(int k) {
  if (processor() == Processor::kAvx512) {
    avx512::mergeUpTo(k);
  } else {
    avx2::mergeUpTo(k);
  }
}

#else

bool canMergeFewStreams() { return false; }
void mergeFewStreams(int) {}

#endif  // PALVOR_HAS_VERSIONS
