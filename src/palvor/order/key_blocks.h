// The listed suffixes of many streams, in order, in blocks that can be searched
// and take an insertion without moving much.
//
//   blocks     [AAC AAG ACA]  [ACC AGG]  [CAT CCA GAT GCA]
//   places      0,0 0,1 0,2    1,0 1,1    2,0 2,1 2,2 2,3
//
// A place is a block's number in the order and an index in the block. The place
// behind a block's last element is that before the next block's first.

#ifndef PALVOR_ORDER_KEY_BLOCKS_H_
#define PALVOR_ORDER_KEY_BLOCKS_H_

#include <algorithm>
#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/io/memory.h"
#include "palvor/order/key_search.h"
#include "palvor/simd/target.h"

namespace palvor {

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

struct Place {
  int block;
  int index;
  bool operator==(const Place&) const = default;
};

class KeyBlocks {
 public:
  static constexpr int kRoom = 64;  // elements of a block

  // Elements, field by field.
  struct Block {
    int begin;  // elements before it were taken out; 0 but in the first block
    int end;    // elements in use end here
    uint64_t unchanged;  // bit i: `entry` is the same as `own` for element i
    // What `entry` has, in bits, as shortLengthOf gives it.
    alignas(64) uint8_t shortLength[kRoom];
    alignas(64) int64_t key[kRoom];
    alignas(64) LcpEntry entry[kRoom];
    alignas(64) LcpEntry own[kRoom];
    alignas(64) int32_t stream[kRoom];
    alignas(64) int32_t bits[kRoom];
    alignas(64) uint32_t pos[kRoom];
  };

  // Empty, with room for so many elements.
  KeyBlocks(int elements, Processor processor);

  // How many blocks there are, and one of them by its number in the order.
  int count() const { return count_; }
  const Block& block(int number) const { return *order_[number]; }

  // Of each block in order, the least length of an entry, in bits, and the same
  // as shortLengthOf gives it; 64 more can be read. Those of the first block
  // may be less.
  const int32_t* leasts() const { return leasts_.data(); }
  const uint8_t* shortLeasts() const { return shortLeasts_.data(); }

  // A length in bits as far as a byte holds it.
  static uint8_t shortLengthOf(int bits) {
    return static_cast<uint8_t>(std::min(bits, 255));
  }

  Place first() const { return {0, count_ > 0 ? block(0).begin : 0}; }

  // Whether an element stands at a place; if not, it is behind the last one.
  bool isOccupied(const Place& place) const {
    return place.block < count_ && place.index < block(place.block).end;
  }

  // The same place, as that before a block's first element if it can be.
  Place atBegin(const Place& place) const {
    if (place.block + 1 < count_ && place.index == block(place.block).end) {
      return {place.block + 1, 0};
    }
    return place;
  }

  // The place of the element before one that is not the first place.
  Place before(const Place& place) const {
    if (place.index > block(place.block).begin) {
      return {place.block, place.index - 1};
    }
    return {place.block - 1, block(place.block - 1).end - 1};
  }
  Place after(const Place& place) const {
    return atBegin({place.block, place.index + 1});
  }

  int streamAt(const Place& place) const {
    return block(place.block).stream[place.index];
  }
  int bitsAt(const Place& place) const {
    return block(place.block).bits[place.index];
  }
  int64_t keyAt(const Place& place) const {
    return block(place.block).key[place.index];
  }
  LcpEntry entryAt(const Place& place) const {
    return block(place.block).entry[place.index];
  }

  // Sets the entry of the element at a place. Its length must not be below what
  // it was, and an element that has that length must be put before it next.
  void setEntry(const Place& place, LcpEntry entry) {
    setEntry(*order_[place.block], place.index, entry);
  }

  // The place behind all elements whose key is not above `key`, and that before
  // all whose key is not below it.
  Place behindKey(int64_t key) const;
  Place beforeKey(int64_t key) const;

  // How many elements stand before a place.
  int rankOf(const Place& place) const;

  // Puts an element in. Its key must not be above those behind the place, nor
  // below those before it.
  void put(const Place& place, const Element& element);

  // Takes the first element out. There must be one.
  void takeFirst();

  // Takes all elements out. Nothing can be put in afterwards.
  void clear() { count_ = 0; }

 private:
  static void setEntry(Block& block, int i, LcpEntry entry) {
    block.entry[i] = entry;
    block.shortLength[i] = shortLengthOf(lcpBits(entry));
    const uint64_t bit = uint64_t{1} << i;
    block.unchanged =
        entry == block.own[i] ? block.unchanged | bit : block.unchanged & ~bit;
  }
  bool areMany() const;
  template <typename IsBelow>
  Place halve(IsBelow isBelow) const;
  void noteBlock(int number);
  void noteLeast(int number, int least);
  void findLeast(int number);
  void moveBlocks(int number, int by);
  Block& addBlock(int number);
  void split(int number);

  int roomOfTables_;
  KeySearch search_;  // for many blocks
  int count_ = 0;
  int made_ = 0;  // blocks that were in the order once
  int free_ = 0;  // of these, that are not now
  palvor::Block<Block*> order_;
  palvor::Block<Block*> freeBlocks_;
  palvor::Block<Block> blocks_;
  palvor::Block<int32_t> leasts_;
  palvor::Block<uint8_t> shortLeasts_;
  // Of the blocks in order, side by side for the searches.
  palvor::Block<int64_t> firstKeys_;
  palvor::Block<int32_t> counts_;
};

}  // namespace palvor

#endif  // PALVOR_ORDER_KEY_BLOCKS_H_
