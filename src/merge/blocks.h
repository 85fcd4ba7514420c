// The listed suffixes of many streams, in order, in blocks that can be searched
// and take an insertion without moving much.
//
//   blocks     [AAC AAG ACA]  [ACC AGG]  [CAT CCA GAT GCA]
//   places      0,0 0,1 0,2    1,0 1,1    2,0 2,1 2,2 2,3
//
// A place is a block's number in the order and an index in the block. The place
// behind a block's last element is that before the next block's first.

#ifndef PALVOR_MERGE_BLOCKS_H_
#define PALVOR_MERGE_BLOCKS_H_

#include <algorithm>
#include <cstdint>

#include "sources/lcp_entry.h"

constexpr int kBlockRoom = 64;  // elements

// Streams that there are blocks for, each block at least half full.
constexpr int kManyStreams = 1 << 17;
constexpr int kMostBlocks = 2 * kManyStreams / kBlockRoom + 2;

// A listed suffix. Its record is read once, here: the buffers of many streams
// push each other out of the caches.
struct Element {
  int64_t key;     // its prefix words (prefixKey)
  LcpEntry entry;  // with the suffix before it, or the one emitted last
  LcpEntry own;    // with the suffix before it in its stream
  int32_t stream;
  int32_t bits;  // its length
  uint32_t pos;  // where it begins, in characters
};

// Elements, field by field.
struct Block {
  int begin;  // elements before it were taken out; 0 but in the first block
  int end;    // elements in use end here
  uint64_t unchanged;  // bit i: `entry` is the same as `own` for element i
  // What `entry` has, in bits, as shortLengthOf gives it.
  alignas(64) uint8_t shortLength[kBlockRoom];
  alignas(64) int64_t key[kBlockRoom];
  alignas(64) LcpEntry entry[kBlockRoom];
  alignas(64) LcpEntry own[kBlockRoom];
  alignas(64) int32_t stream[kBlockRoom];
  alignas(64) int32_t bits[kBlockRoom];
  alignas(64) uint32_t pos[kBlockRoom];
};

struct Place {
  int block;
  int index;
  bool operator==(const Place&) const = default;
};

// The blocks in order, and how many there are. These, and what stands in the
// blocks, are written by the functions below alone.
extern Block* blockOrder[kMostBlocks];
extern int blockCount;

// Of each block in order, the least length of an entry, in bits, and the same
// as shortLengthOf gives it. Those of the first block may be less.
extern int32_t leasts[kMostBlocks];
alignas(64) extern uint8_t shortLeasts[kMostBlocks + 64];

// A length in bits as far as a byte holds it.
inline uint8_t shortLengthOf(int bits) {
  return static_cast<uint8_t>(std::min(bits, 255));
}

inline Block& blockAt(int number) { return *blockOrder[number]; }

inline Place firstPlace() { return {0, blockCount > 0 ? blockAt(0).begin : 0}; }

// Whether an element stands at a place; if not, it is behind the last one.
inline bool isOccupied(const Place& place) {
  return place.block < blockCount && place.index < blockAt(place.block).end;
}

// The same place, as that before a block's first element if it can be.
inline Place atBegin(const Place& place) {
  if (place.block + 1 < blockCount && place.index == blockAt(place.block).end) {
    return {place.block + 1, 0};
  }
  return place;
}

// The place of the element before one that is not the first place.
inline Place before(const Place& place) {
  if (place.index > blockAt(place.block).begin) {
    return {place.block, place.index - 1};
  }
  return {place.block - 1, blockAt(place.block - 1).end - 1};
}

inline Place after(const Place& place) {
  return atBegin({place.block, place.index + 1});
}

inline int streamAt(const Place& place) {
  return blockAt(place.block).stream[place.index];
}

inline int bitsAt(const Place& place) {
  return blockAt(place.block).bits[place.index];
}

inline int64_t keyAt(const Place& place) {
  return blockAt(place.block).key[place.index];
}

inline LcpEntry entryAt(const Place& place) {
  return blockAt(place.block).entry[place.index];
}

// Sets the entry of a block's element i.
inline void setEntry(Block& block, int i, LcpEntry entry) {
  block.entry[i] = entry;
  block.shortLength[i] = shortLengthOf(lcpBits(entry));
  const uint64_t bit = uint64_t{1} << i;
  block.unchanged =
      entry == block.own[i] ? block.unchanged | bit : block.unchanged & ~bit;
}

// Sets the entry of the element at a place. Its length must not be below what
// it was, and an element that has that length must be put before it next.
inline void setEntry(const Place& place, LcpEntry entry) {
  setEntry(blockAt(place.block), place.index, entry);
}

// The place behind all elements whose key is not above `key`, and that before
// all whose key is not below it.
Place placeBehind(int64_t key);
Place placeBefore(int64_t key);

// How many elements stand before a place.
int rankOf(const Place& place);

// Puts an element in. Its key must not be above those behind the place, nor
// below those before it.
void putAt(const Place& place, const Element& element);

// Takes the first element out. There must be one.
void takeFirst();

#endif  // PALVOR_MERGE_BLOCKS_H_
