#include "merge/few_streams.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "merge/front.h"
#include "merge/list.h"
#include "output/counters.h"
#include "sources/compare.h"
#include "sources/strings.h"

// Compiled for processors with AVX2 and for all others; which it is shows when
// the program starts. AFL++'s compiler takes no function of several versions.
#if defined(__x86_64__) && !defined(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
#define PALVOR_PROCESSOR_VERSIONS \
  [[gnu::target_clones("arch=x86-64-v3", "default")]]
#else
#define PALVOR_PROCESSOR_VERSIONS
#endif

namespace {

// Four streams side by side. The stream's number is that of its lane.
using Lanes [[gnu::vector_size(32)]] = int64_t;
constexpr int kLanes = 4;
constexpr int kGroups = kFewStreams / kLanes;

int groups = 0;  // that hold a stream

// Per stream, its suffix's key (prefixKey); of one that is not listed, the
// largest number.
Lanes keys[kGroups];

// Per stream, a mask of the bits that a suffix which does not sort before its
// own must share to be compared: one more than the stored length, or all.
Lanes leading[kGroups];

uint64_t order = 0;  // the listed streams, 4 bits each, the first one lowest
int listed = 0;      // how many
uint32_t unchanged = 0;  // bit k: LLCP[k] is still LOCP[k]
uint32_t shortOnes = 0;  // bit k: stream k's suffix ends in its prefix words

uint32_t bitOf(int k) { return 1U << k; }

void setBit(uint32_t& bits, int k, bool value) {
  bits = (bits & ~bitOf(k)) | static_cast<uint32_t>(value) << k;
}

int64_t& laneOf(Lanes* lanes, int k) {
  return reinterpret_cast<int64_t*>(lanes)[k];
}

// The mask that goes with a stored length.
inline int64_t leadingMask(LcpEntry stored) {
  const int bits = std::min(lcpBits(stored), 63);
  return std::numeric_limits<int64_t>::min() >> bits;
}

inline void putIntoOrder(int k, int place) {
  const uint64_t before = (uint64_t{1} << (4 * place)) - 1;
  order = (order & before) | static_cast<uint64_t>(k) << (4 * place) |
          (order & ~before) << 4;
  listed++;
}

// Takes down the stored entry of stream k.
inline void noteEntry(int k) {
  laneOf(leading, k) = leadingMask(LLCP[k]);
  setBit(unchanged, k, LLCP[k] == LOCP[k]);
}

// How a key stands to those of the listed streams: a bit for each stream.
struct Relation {
  uint32_t after;   // the key sorts after the stream's
  uint32_t equal;   // the keys are equal
  uint32_t shared;  // the key has the stream's leading bits
};

inline Relation relate(int64_t key) {
  constexpr int64_t kAfter = 1, kEqual = 1 << 16, kShared = 1LL << 32;
  Lanes bit = {1, 2, 4, 8};
  Lanes found = {};
  for (int g = 0; g < groups; g++) {
    const Lanes difference = keys[g] ^ key;
    found |= (keys[g] < key) & (bit * kAfter);
    found |= (difference == 0) & (bit * kEqual);
    found |= ((difference & leading[g]) == 0) & (bit * kShared);
    bit <<= kLanes;
  }
  const auto all =
      static_cast<uint64_t>((found[0] | found[1]) | (found[2] | found[3]));
  return {static_cast<uint32_t>(all & 0xFFFF),
          static_cast<uint32_t>(all >> 16 & 0xFFFF),
          static_cast<uint32_t>(all >> 32)};
}

inline LcpEntry entryOfKeys(int64_t a, int64_t b) {
  return makeLcpEntry(std::countl_zero(static_cast<uint64_t>(a ^ b)), 1);
}

// Walks the list for stream k, and keeps up with it.
void walk(int k) {
  const int place = insertIntoList(k);
  putIntoOrder(k, place);
  noteEntry(k);
  if (LNXT[k] >= 0) noteEntry(LNXT[k]);
}

void takeOutOfOrder() {
  order >>= 4;
  listed--;
}

void enter(int k) {
  const Suffix& suffix = *Suffixes[k];
  laneOf(keys, k) = prefixKey(suffix);
  setBit(shortOnes, k, remainingBits(suffix) < 64);
}

// Where genomes are alike, most suffixes meet equal keys, and looking at the
// keys first is looking in vain. So the walks are counted: if too many moves of
// a stretch came to one, the following ones begin with it.
constexpr int kStretch = 1024;      // moves
constexpr int kTooManyWalks = 256;  // of a stretch's moves
constexpr int kWalkingMoves = 1 << 14;
int moves = 0;        // in this stretch
int walks = 0;        // of these moves
int walkingLeft = 0;  // moves to be made by walking; nothing is kept up then

bool isWalkingWorthwhile() {
  if (++moves < kStretch) return false;
  const bool worthwhile = walks > kTooManyWalks;
  moves = walks = 0;
  return worthwhile;
}

// Takes everything down anew.
void takeUpList() {
  order = 0;
  listed = 0;
  shortOnes = 0;
  prepareFewStreams();
  for (int k = Lfst; k >= 0; k = LNXT[k]) {
    putIntoOrder(k, listed);
    enter(k);
    noteEntry(k);
  }
}

}  // namespace

void prepareFewStreams() {
  for (int k = 0; k < kFewStreams; k++) {
    laneOf(keys, k) = std::numeric_limits<int64_t>::max();
  }
}

void primeFewStreams(int k) {
  groups = k / kLanes + 1;
  enter(k);
  walk(k);
}

PALVOR_PROCESSOR_VERSIONS void moveHeadOfFew(int k, LcpEntry entry) {
  if (walkingLeft > 0) {
    moveHeadByWalk(k, entry);
    if (--walkingLeft == 0) takeUpList();
    return;
  }
  if (isWalkingWorthwhile()) walkingLeft = kWalkingMoves;

  LLCP[k] = LOCP[k] = entry;
  addList(-1);
  takeOutOfOrder();
  const uint32_t formerShortOnes = shortOnes;  // with the suffix emitted last
  enter(k);
  const int64_t key = laneOf(keys, k);
  const Relation relation = relate(key);
  if (((relation.equal & ~bitOf(k)) | shortOnes | formerShortOnes) != 0) {
    currlcp = lcpBits(entry);
    currfbt = lcpFirstbit(entry);
    walk(k);
    walks++;
    return;
  }

  const int place = std::popcount(relation.after);
  const int previous = static_cast<int>((order << 4) >> (4 * place) & 15);
  const int next = static_cast<int>(order >> (4 * place) & 15);
  const uint32_t hasNext = place < listed ? 1 : 0;
  // A walk compares suffixes before the new one, and perhaps the next one.
  const uint32_t comparedBefore = relation.shared & relation.after;
  const uint32_t comparedNext = (relation.shared >> next) & hasNext;
  const uint32_t compared = comparedBefore | comparedNext << next;
  const int comparisons = std::popcount(compared);
  nlcmp += place + static_cast<int>(hasNext);
  nncmp += comparisons;
  np2 += comparisons;
  nnoc += std::popcount(compared & unchanged);

  const LcpEntry stored = LLCP[next];
  LcpEntry known = entry;
  if (comparedBefore != 0) known = entryOfKeys(laneOf(keys, previous), key);
  if (comparedNext != 0) known = stored;
  LLCP[next] =
      comparedNext != 0 ? entryOfKeys(laneOf(keys, next), key) : stored;
  LLCP[k] = known;
  noteEntry(next);
  noteEntry(k);

  LNXT[k] = hasNext != 0 ? next : -1;
  *(place > 0 ? &LNXT[previous] : &Lfst) = k;
  putIntoOrder(k, place);
}

void dropHeadOfFew() {
  if (walkingLeft == 0) {
    laneOf(keys, Lfst) = std::numeric_limits<int64_t>::max();
    setBit(shortOnes, Lfst, false);
    takeOutOfOrder();
  }
  addList(-1);
}
