#include "merge/blocks.h"

#include <algorithm>
#include <cstring>
#include <limits>

Block* blockOrder[kMostBlocks] = {};
constinit int blockCount = 0;

namespace {

// Of the blocks in order, side by side for the searches.
int64_t firstKeys[kMostBlocks];
int32_t counts[kMostBlocks];

Block blocks[kMostBlocks];
int blocksMade = 0;
Block* freeBlocks[kMostBlocks];  // made, and not in the order now
int freeCount = 0;

void noteBlock(int number) {
  const Block& block = blockAt(number);
  firstKeys[number] = block.key[block.begin];
  counts[number] = block.end - block.begin;
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
  blockCount += by;
}

// Puts an empty block into the order.
Block& addBlock(int number) {
  moveBlocks(number, 1);
  Block* block =
      freeCount > 0 ? freeBlocks[--freeCount] : &blocks[blocksMade++];
  block->begin = block->end = 0;
  block->least = std::numeric_limits<int>::max();
  blockOrder[number] = block;
  return *block;
}

// Copies elements `begin` to `end` - 1; the two blocks may be one.
void copyElements(const Block& from, int begin, int end, Block& to, int at) {
  const auto copy = [=](const auto* source, auto* target) {
    std::memmove(target + at, source + begin,
                 static_cast<size_t>(end - begin) * sizeof *target);
  };
  copy(from.key, to.key);
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
  upper.least = lower.least;
  noteBlock(number);
  noteBlock(number + 1);
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

}  // namespace

Place placeBehind(int64_t key) {
  return search([=](int64_t other) { return other <= key; });
}

Place placeBefore(int64_t key) {
  return search([=](int64_t other) { return other < key; });
}

int rankOf(const Place& place) {
  int rank = place.index;
  if (place.block < blockCount) rank -= blockAt(place.block).begin;
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
  if (down) {
    copyElements(block, block.begin, index, block, block.begin - 1);
    block.begin--;
    index--;
  } else {
    copyElements(block, index, block.end, block, index + 1);
    block.end++;
  }
  block.key[index] = element.key;
  block.entry[index] = element.entry;
  block.own[index] = element.own;
  block.stream[index] = element.stream;
  block.bits[index] = element.bits;
  block.pos[index] = element.pos;
  block.least = std::min(block.least, lcpBits(element.entry));
  noteBlock(number);
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
