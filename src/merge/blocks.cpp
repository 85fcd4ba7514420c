#include "merge/blocks.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "support/intrinsics.h"
#include "support/processor.h"

Block* blockOrder[kMostBlocks] = {};
constinit int blockCount = 0;
int32_t leasts[kMostBlocks] = {};
alignas(64) uint8_t shortLeasts[kMostBlocks + 64] = {};

namespace {

// More than there are blocks, for those who read many at a time.
constexpr int kRoomOfTables = kMostBlocks + 64;

// Of the blocks in order, side by side for the searches.
alignas(64) int64_t firstKeys[kRoomOfTables];
alignas(64) int32_t counts[kRoomOfTables];

Block blocks[kMostBlocks];
int blocksMade = 0;
Block* freeBlocks[kMostBlocks];  // made, and not in the order now
int freeCount = 0;

// Bits 0 to `index` - 1.
uint64_t bitsBelow(int index) {
  return index > 0 ? ~uint64_t{0} >> (64 - index) : 0;
}

void noteBlock(int number) {
  const Block& block = blockAt(number);
  firstKeys[number] = block.key[block.begin];
  counts[number] = block.end - block.begin;
}

// The least length of a block's entries is known, or has to be looked for.
void noteLeast(int number, int least) {
  leasts[number] = least;
  shortLeasts[number] = shortLengthOf(least);
}

void noteLeast(int number) {
  const Block& block = blockAt(number);
  int least = std::numeric_limits<int>::max();
  for (int i = block.begin; i < block.end; i++) {
    least = std::min(least, lcpBits(block.entry[i]));
  }
  noteLeast(number, least);
}

// Moves what is kept of the blocks from a number on, up or down by one.
void moveBlocks(int number, int by) {
  const auto move = [&](auto* table) {
    std::memmove(table + number + by, table + number,
                 static_cast<size_t>(blockCount - number) * sizeof *table);
  };
  move(blockOrder);
  move(firstKeys);
  move(counts);
  move(leasts);
  move(shortLeasts);
  blockCount += by;
}

// Puts an empty block into the order.
Block& addBlock(int number) {
  moveBlocks(number, 1);
  Block* block =
      freeCount > 0 ? freeBlocks[--freeCount] : &blocks[blocksMade++];
  block->begin = block->end = 0;
  block->unchanged = 0;
  blockOrder[number] = block;
  noteLeast(number, std::numeric_limits<int>::max());
  return *block;
}

// Copies elements `begin` to `end` - 1; the two blocks may be one.
void copyElements(const Block& from, int begin, int end, Block& to, int at) {
  const auto copy = [=](const auto* source, auto* target) {
    std::memmove(target + at, source + begin,
                 static_cast<size_t>(end - begin) * sizeof *target);
  };
  copy(from.key, to.key);
  copy(from.shortLength, to.shortLength);
  copy(from.entry, to.entry);
  copy(from.own, to.own);
  copy(from.stream, to.stream);
  copy(from.bits, to.bits);
  copy(from.pos, to.pos);
}

// Moves the upper half of a full block to a new one behind it.
void split(int number) {
  Block& upper = addBlock(number + 1);
  Block& lower = blockAt(number);
  constexpr int kHalf = kBlockRoom / 2;
  copyElements(lower, kHalf, kBlockRoom, upper, 0);
  lower.end = upper.end = kHalf;
  upper.unchanged = lower.unchanged >> kHalf;
  for (const int half : {number, number + 1}) {
    noteBlock(half);
    noteLeast(half);
  }
}

// The place before the first key that is not below the one searched for.
// Halves without branching on what is found, which cannot be foreseen.
template <typename IsBelow>
Place search(IsBelow isBelow) {
  if (blockCount == 0) return {0, 0};
  int number = 0;
  for (int rest = blockCount; rest > 1;) {
    const int half = rest / 2;
    number = isBelow(firstKeys[number + half]) ? number + half : number;
    rest -= half;
  }
  const Block& block = blockAt(number);
  int index = block.begin;
  for (int rest = block.end - block.begin; rest > 1;) {
    const int half = rest / 2;
    index = isBelow(block.key[index + half - 1]) ? index + half : index;
    rest -= half;
  }
  return {number, index + (isBelow(block.key[index]) ? 1 : 0)};
}

#if defined(PALVOR_HAS_VERSIONS)

PALVOR_AVX2_BEGIN
namespace avx2 {
#include "merge/lanes_avx2.h"
// The lanes come first.
#include "merge/blocks_lanes.h"
}  // namespace avx2
PALVOR_END

PALVOR_AVX512_BEGIN
namespace avx512 {
#include "merge/lanes_avx512.h"
// The lanes come first.
#include "merge/blocks_lanes.h"  // NOLINT(readability-duplicate-include)
}  // namespace avx512
PALVOR_END

#endif  // PALVOR_HAS_VERSIONS

// What is kept of few blocks is likely to have been written just now, number by
// number, and would have to reach the cache before many can be read at once.
constexpr int kFewBlocks = 16;

// For many blocks; null if there is nothing better than what few have.
struct Versions {
  Place (*placeBefore)(int64_t key) = nullptr;
  int (*elementsBeforeBlock)(int number) = nullptr;
};

Versions fastest() {
#if defined(PALVOR_HAS_VERSIONS)
  if (processor() == Processor::kAvx512) {
    return {&avx512::placeBeforeByLanes, &avx512::elementsBeforeBlock};
  }
  if (processor() == Processor::kAvx2) {
    return {&avx2::placeBeforeByLanes, &avx2::elementsBeforeBlock};
  }
#endif
  return {};
}

const Versions forMany = fastest();

// Whether they are to be used.
bool amongManyBlocks() {
  return blockCount >= kFewBlocks && forMany.placeBefore != nullptr;
}

}  // namespace

Place placeBehind(int64_t key) {
  if (amongManyBlocks() && key < std::numeric_limits<int64_t>::max()) {
    return forMany.placeBefore(key + 1);
  }
  return search([=](int64_t other) { return other <= key; });
}

Place placeBefore(int64_t key) {
  if (amongManyBlocks()) return forMany.placeBefore(key);
  return search([=](int64_t other) { return other < key; });
}

int rankOf(const Place& place) {
  int rank = place.index;
  if (place.block < blockCount) rank -= blockAt(place.block).begin;
  if (amongManyBlocks()) return rank + forMany.elementsBeforeBlock(place.block);
  for (int number = 0; number < place.block; number++) rank += counts[number];
  return rank;
}

void putAt(const Place& place, const Element& element) {
  int number = place.block;
  int index = place.index;
  if (blockCount == 0) addBlock(0);
  if (blockAt(number).end == kBlockRoom && blockAt(number).begin == 0) {
    split(number);
    if (index > blockAt(number).end) {
      index -= blockAt(number).end;
      number++;
    }
  }
  Block& block = blockAt(number);
  // Room is behind the elements, and in the first block before them too.
  const int elementsBefore = index - block.begin;
  const bool down = block.begin > 0 && (block.end == kBlockRoom ||
                                        elementsBefore < block.end - index);
  const uint64_t unchangedBefore = block.unchanged & bitsBelow(index);
  const uint64_t unchangedBehind = block.unchanged & ~unchangedBefore;
  if (down) {
    block.unchanged = unchangedBefore >> 1 | unchangedBehind;
    copyElements(block, block.begin, index, block, block.begin - 1);
    block.begin--;
    index--;
  } else {
    block.unchanged = unchangedBefore | unchangedBehind << 1;
    copyElements(block, index, block.end, block, index + 1);
    block.end++;
  }
  block.key[index] = element.key;
  block.own[index] = element.own;
  setEntry(block, index, element.entry);
  block.stream[index] = element.stream;
  block.bits[index] = element.bits;
  block.pos[index] = element.pos;
  noteBlock(number);
  noteLeast(number, std::min(leasts[number], lcpBits(element.entry)));
}

void takeFirst() {
  Block& block = blockAt(0);
  if (++block.begin < block.end) {
    noteBlock(0);
  } else {
    freeBlocks[freeCount++] = &block;
    moveBlocks(1, -1);
  }
}
