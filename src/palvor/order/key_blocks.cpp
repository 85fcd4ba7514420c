#include "palvor/order/key_blocks.h"

#include <cstring>
#include <limits>

namespace palvor {
namespace {

// What is kept of few blocks is likely to have been written just now, number by
// number, and would have to reach the cache before many can be read at once.
constexpr int kFewBlocks = 16;

// More than there are blocks, for those who read many at a time.
constexpr int kRoomBehind = 64;

// Bits 0 to `index` - 1.
uint64_t bitsBelow(int index) {
  return index > 0 ? ~uint64_t{0} >> (64 - index) : 0;
}

// Copies elements `begin` to `end` - 1; the two blocks may be one.
void copyElements(const KeyBlocks::Block& from, int begin, int end,
                  KeyBlocks::Block& to, int at) {
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

// Blocks that hold so many elements, each at least half full, but for two.
int mostBlocks(int elements) { return 2 * elements / KeyBlocks::kRoom + 2; }

}  // namespace

KeyBlocks::KeyBlocks(int elements, Processor processor)
    : roomOfTables_(mostBlocks(elements) + kRoomBehind),
      search_(keySearch(processor)),
      order_(roomOfTables_, "the order of the blocks"),
      freeBlocks_(roomOfTables_, "the free blocks"),
      blocks_(mostBlocks(elements), "the blocks of listed suffixes"),
      leasts_(roomOfTables_, "the blocks' least entries"),
      shortLeasts_(roomOfTables_, "the blocks' least entries"),
      firstKeys_(roomOfTables_, "the blocks' first keys"),
      counts_(roomOfTables_, "the blocks' counts") {}

void KeyBlocks::noteBlock(int number) {
  const Block& noted = block(number);
  firstKeys_[number] = noted.key[noted.begin];
  counts_[number] = noted.end - noted.begin;
}

void KeyBlocks::noteLeast(int number, int least) {
  leasts_[number] = least;
  shortLeasts_[number] = shortLengthOf(least);
}

void KeyBlocks::findLeast(int number) {
  const Block& searched = block(number);
  int least = std::numeric_limits<int>::max();
  for (int i = searched.begin; i < searched.end; i++) {
    least = std::min(least, lcpBits(searched.entry[i]));
  }
  noteLeast(number, least);
}

// Moves what is kept of the blocks from a number on, up or down by one.
void KeyBlocks::moveBlocks(int number, int by) {
  const auto move = [&](const auto& table) {
    auto* from = table.data() + number;
    std::memmove(from + by, from,
                 static_cast<size_t>(count_ - number) * sizeof *from);
  };
  move(order_);
  move(firstKeys_);
  move(counts_);
  move(leasts_);
  move(shortLeasts_);
  count_ += by;
}

// Puts an empty block into the order.
KeyBlocks::Block& KeyBlocks::addBlock(int number) {
  moveBlocks(number, 1);
  Block* added = free_ > 0 ? freeBlocks_[--free_] : &blocks_[made_++];
  added->begin = added->end = 0;
  added->unchanged = 0;
  order_[number] = added;
  noteLeast(number, std::numeric_limits<int>::max());
  return *added;
}

// Moves the upper half of a full block to a new one behind it.
void KeyBlocks::split(int number) {
  Block& upper = addBlock(number + 1);
  Block& lower = *order_[number];
  constexpr int kHalf = kRoom / 2;
  copyElements(lower, kHalf, kRoom, upper, 0);
  lower.end = upper.end = kHalf;
  upper.unchanged = lower.unchanged >> kHalf;
  for (const int half : {number, number + 1}) {
    noteBlock(half);
    findLeast(half);
  }
}

// Whether the searches by vectors are to be used.
bool KeyBlocks::areMany() const {
  return count_ >= kFewBlocks && search_.firstNotBelow != nullptr;
}

// The place before the first key that is not below the one searched for.
// Halves without branching on what is found, which would be mispredicted.
template <typename IsBelow>
Place KeyBlocks::halve(IsBelow isBelow) const {
  if (count_ == 0) return {0, 0};
  int number = 0;
  for (int rest = count_; rest > 1;) {
    const int half = rest / 2;
    number = isBelow(firstKeys_[number + half]) ? number + half : number;
    rest -= half;
  }
  const Block& found = block(number);
  int index = found.begin;
  for (int rest = found.end - found.begin; rest > 1;) {
    const int half = rest / 2;
    index = isBelow(found.key[index + half - 1]) ? index + half : index;
    rest -= half;
  }
  return {number, index + (isBelow(found.key[index]) ? 1 : 0)};
}

Place KeyBlocks::behindKey(int64_t key) const {
  if (areMany() && key < std::numeric_limits<int64_t>::max()) {
    return beforeKey(key + 1);
  }
  return halve([=](int64_t other) { return other <= key; });
}

Place KeyBlocks::beforeKey(int64_t key) const {
  if (!areMany()) return halve([=](int64_t other) { return other < key; });
  const int number =
      search_.firstNotBelow(firstKeys_.data(), 1, count_, roomOfTables_, key) -
      1;
  const Block& found = block(number);
  return {number,
          search_.firstNotBelow(found.key, found.begin, found.end, kRoom, key)};
}

int KeyBlocks::rankOf(const Place& place) const {
  int rank = place.index;
  if (place.block < count_) rank -= block(place.block).begin;
  if (areMany()) return rank + search_.sum(counts_.data(), place.block);
  for (int number = 0; number < place.block; number++) rank += counts_[number];
  return rank;
}

void KeyBlocks::put(const Place& place, const Element& element) {
  int number = place.block;
  int index = place.index;
  if (count_ == 0) addBlock(0);
  if (block(number).end == kRoom && block(number).begin == 0) {
    split(number);
    if (index > block(number).end) {
      index -= block(number).end;
      number++;
    }
  }
  Block& into = *order_[number];
  // Room is behind the elements, and in the first block before them too.
  const int elementsBefore = index - into.begin;
  const bool down = into.begin > 0 &&
                    (into.end == kRoom || elementsBefore < into.end - index);
  const uint64_t unchangedBefore = into.unchanged & bitsBelow(index);
  const uint64_t unchangedBehind = into.unchanged & ~unchangedBefore;
  if (down) {
    into.unchanged = unchangedBefore >> 1 | unchangedBehind;
    copyElements(into, into.begin, index, into, into.begin - 1);
    into.begin--;
    index--;
  } else {
    into.unchanged = unchangedBefore | unchangedBehind << 1;
    copyElements(into, index, into.end, into, index + 1);
    into.end++;
  }
  into.key[index] = element.key;
  into.own[index] = element.own;
  setEntry(into, index, element.entry);
  into.stream[index] = element.stream;
  into.bits[index] = element.bits;
  into.pos[index] = element.pos;
  noteBlock(number);
  noteLeast(number, std::min(leasts_[number], lcpBits(element.entry)));
}

void KeyBlocks::takeFirst() {
  Block& taken = *order_[0];
  if (++taken.begin < taken.end) {
    noteBlock(0);
  } else {
    freeBlocks_[free_++] = &taken;
    moveBlocks(1, -1);
  }
}

}  // namespace palvor
