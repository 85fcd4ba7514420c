#include "merge/few_streams.h"

#include "support/intrinsics.h"
#include "support/processor.h"

#if defined(PALVOR_HAS_VERSIONS)

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "merge/emission.h"
#include "merge/front.h"
#include "merge/list.h"
#include "merge/refill.h"
#include "output/counters.h"
#include "output/emitted.h"
#include "run/options.h"
#include "sources/compare.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"

namespace {

// The rows: keys (prefixKey) and entries of the listed suffixes, in order, as
// LLCP would hold them. While the head is moved, its place 0 holds the suffix
// emitted last. Behind the last suffix stands the largest key, or none.
alignas(64) int64_t listedKeys[kFewStreams + 8];
alignas(64) LcpEntry listedEntries[kFewStreams];

// Per stream, the key of the record that it hands out next, known before it is
// asked for; anything, if that record has yet to be read.
int64_t upcomingKeys[kFewStreams];

// Whether a listed suffix may be shorter than 64 bits.
bool mayHoldShort = false;

constexpr int64_t kLargestKey = std::numeric_limits<int64_t>::max();

// A bit for each place before one.
constexpr uint32_t placesBelow(int place) { return (1U << place) - 1; }

// The entry of two suffixes that part within the prefix words.
[[gnu::always_inline]] inline LcpEntry entryOfKeys(int64_t a, int64_t b) {
  return makeLcpEntry(std::countl_zero(static_cast<uint64_t>(a ^ b)), 1);
}

// Where the head goes, and what changes.
struct Move {
  uint32_t passed = 0;   // a bit for each suffix that it goes behind, the first
                         // of which is at place 1
  int64_t key = 0;       // of its new suffix
  LcpEntry entry = 0;    // with the suffix before it
  uint32_t changed = 0;  // bit p: the suffix at place p has another entry
  LcpEntry nextEntry = 0;  // this one
  uint32_t restored = 0;   // `changed`, if LOCP holds that one
};

// What is known of the listed streams beside the rows.
struct Listed {
  uint64_t streams;    // their numbers in order, 4 bits each, the first lowest
  uint32_t unchanged;  // bit p: the entry at place p is what LOCP holds
  int count;

  int streamAt(int place) const {
    return static_cast<int>(streams >> (4 * place) & 15);
  }

  // After a move of the head, whose suffix has the entry `own` with the one
  // before it in its stream.
  [[gnu::always_inline]] Listed moved(const Move& move, LcpEntry own) const {
    const int bits = 4 * std::popcount(move.passed);
    const uint64_t before = (uint64_t{1} << bits) - 1;
    const uint32_t place = move.passed + 1;
    return {(streams >> 4 & before) | (streams & 15) << bits |
                (streams & ~(before << 4 | 15)),
            (unchanged >> 1 & move.passed) | (move.entry == own ? place : 0) |
                (unchanged & ~(move.passed | place | move.changed)) |
                move.restored,
            count};
  }
};

[[gnu::always_inline]] inline int64_t upcomingKey(int k) {
  return prefixKey(sufbs[k][std::min(sufps[k], sufls[k] - 1)]);
}

// The key of a record that stream k has just handed out.
[[gnu::always_inline]] inline int64_t takeKey(int k, const Suffix& suffix) {
  const bool readAnew = sufps[k] == 1;
  const int64_t key = readAnew ? prefixKey(suffix) : upcomingKeys[k];
  upcomingKeys[k] = upcomingKey(k);
  return key;
}

// Fills the rows from the list. Records whose prefix words contradict their
// length can stand there in an order that is not that of the keys: then it is
// the list that goes on.
Listed takeUpList() {
  std::ranges::fill(listedKeys, kLargestKey);
  mayHoldShort = false;
  Listed listed = {};
  for (int k = Lfst; k >= 0; k = LNXT[k]) {
    const Suffix& suffix = *Suffixes[k];
    const int place = listed.count++;
    listed.streams |= static_cast<uint64_t>(k) << (4 * place);
    if (LLCP[k] == LOCP[k]) listed.unchanged |= 1U << place;
    listedKeys[place] = prefixKey(suffix);
    listedEntries[place] = LLCP[k];
    upcomingKeys[k] = upcomingKey(k);
    if (remainingBits(suffix) < 64) mayHoldShort = true;
    if (place > 0 && listedKeys[place - 1] > listedKeys[place]) {
      streamsAscend = false;
    }
  }
  return listed;
}

// Writes the list anew. LOCP is kept up anyway.
void writeList(Listed listed) {
  Lfst = -1;
  for (int place = listed.count - 1; place >= 0; place--) {
    const int k = listed.streamAt(place);
    LLCP[k] = listedEntries[place];
    LNXT[k] = Lfst;
    Lfst = k;
  }
}

[[gnu::noinline]] Listed withoutHead(Listed listed) {
  std::copy(listedKeys + 1, listedKeys + kFewStreams + 1, listedKeys);
  std::copy(listedEntries + 1, listedEntries + kFewStreams, listedEntries);
  return {listed.streams >> 4, listed.unchanged >> 1, listed.count - 1};
}

[[gnu::noinline]] Listed placeByWalk(Listed listed, int k, LcpEntry own) {
  writeList(listed);
  moveHeadByWalk(k, own);
  return takeUpList();
}

// Whether a suffix begins with a listed one of less than 64 bits.
[[gnu::noinline]] bool meetsShort(Listed listed, int64_t key) {
  mayHoldShort = false;
  bool meets = false;
  for (int place = 0; place < listed.count; place++) {
    const Suffix& suffix =
        place == 0 ? currSuffix : *Suffixes[listed.streamAt(place)];
    const int bits = remainingBits(suffix);
    if (bits >= 64) continue;
    mayHoldShort = true;
    const auto difference = static_cast<uint64_t>(prefixKey(suffix) ^ key);
    if (std::countl_zero(difference) >= bits) meets = true;
  }
  return meets;
}

PALVOR_AVX512_BEGIN
namespace avx512 {
#include "merge/rows_avx512.h"
// The rows come first.
#include "merge/few_streams_loop.h"
}  // namespace avx512
PALVOR_END

PALVOR_AVX2_BEGIN
namespace avx2 {
#include "merge/rows_avx2.h"
// The rows come first.
#include "merge/few_streams_loop.h"  // NOLINT(readability-duplicate-include)
}  // namespace avx2
PALVOR_END

}  // namespace

bool canMergeFewStreams() { return processor() >= Processor::kAvx2; }

void mergeFewStreams(int k) {
  if (processor() == Processor::kAvx512) {
    k <= 4   ? avx512::mergeListed<4>()
    : k <= 8 ? avx512::mergeListed<8>()
             : avx512::mergeListed<16>();
  } else {
    k <= 4   ? avx2::mergeListed<4>()
    : k <= 8 ? avx2::mergeListed<8>()
             : avx2::mergeListed<16>();
  }
}

#else

bool canMergeFewStreams() { return false; }
void mergeFewStreams(int) {}

#endif  // PALVOR_HAS_VERSIONS
