// The blocks of listed suffixes against a sorted vector, and what they are
// asked for by the count of a walk's comparisons.

#include "palvor/order/key_blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "palvor/order/walk_cost.h"
#include "support/engine.h"

namespace {

using palvor::Element;
using palvor::KeyBlocks;
using palvor::LcpEntry;
using palvor::Place;
using palvor::Processor;

class Randomly {
 public:
  explicit Randomly(unsigned seed) : random_(seed) {}

  int below(int limit) {
    return static_cast<int>(random_() % static_cast<unsigned>(limit));
  }
  bool oneIn(int count) { return below(count) == 0; }

  // Few keys, so that many are equal, and now and then the outermost ones.
  int64_t key() {
    if (oneIn(50)) return oneIn(2) ? INT64_MAX : INT64_MIN;
    return below(200) - 100;
  }

  // Lengths on both sides of what a byte and the prefix words hold.
  LcpEntry entry() {
    static constexpr int kLengths[] = {0,  1,   40,  62,  63,  64,   65,
                                       66, 128, 254, 255, 256, 1000, 300'000};
    return palvor::makeLcpEntry(kLengths[below(14)], below(2));
  }

  Element element(int64_t key) {
    const LcpEntry own = entry();
    return {key,
            oneIn(2) ? own : entry(),
            own,
            below(100'000),
            1 + below(300),
            static_cast<uint32_t>(below(1000))};
  }

 private:
  std::mt19937 random_;
};

bool sameElement(const Element& a, const Element& b) {
  return a.key == b.key && a.entry == b.entry && a.own == b.own &&
         a.stream == b.stream && a.bits == b.bits && a.pos == b.pos;
}

// Both, kept alike.
struct Pair {
  Pair(int most, Processor processor) : blocks(most, processor) {}

  Place placeOf(int rank) const {
    Place place = blocks.first();
    for (int i = 0; i < rank; i++) place = blocks.after(place);
    return place;
  }

  // Puts an element in, behind those of the same key or before them.
  void put(const Element& element, bool behind) {
    const auto isBelow = [](const Element& a, const Element& b) {
      return a.key < b.key;
    };
    const auto at =
        behind ? std::upper_bound(plain.begin(), plain.end(), element, isBelow)
               : std::lower_bound(plain.begin(), plain.end(), element, isBelow);
    const Place place =
        behind ? blocks.behindKey(element.key) : blocks.beforeKey(element.key);
    ASSERT_EQ(blocks.rankOf(place), at - plain.begin());
    blocks.put(place, element);
    plain.insert(at, element);
  }

  // Raises the entry at a rank, and puts one of its former length before it, as
  // an arrival does.
  void relate(int rank, const Element& arrival, int by) {
    Element& next = plain[static_cast<size_t>(rank)];
    Element element = arrival;
    element.key = next.key;
    element.entry = next.entry;
    next.entry = palvor::makeLcpEntry(palvor::lcpBits(next.entry) + by, 1);
    const Place place = placeOf(rank);
    ASSERT_TRUE(blocks.isOccupied(place));
    blocks.setEntry(place, next.entry);
    blocks.put(place, element);
    plain.insert(plain.begin() + rank, element);
  }

  void takeFirst() {
    blocks.takeFirst();
    plain.erase(plain.begin());
  }

  void expectAlike() const {
    size_t rank = 0;
    for (int number = 0; number < blocks.count(); number++) {
      const KeyBlocks::Block& block = blocks.block(number);
      ASSERT_LT(block.begin, block.end) << "no block is empty";
      ASSERT_TRUE(number == 0 || block.begin == 0);
      int least = INT32_MAX;
      for (int i = block.begin; i < block.end; i++, rank++) {
        ASSERT_LT(rank, plain.size());
        const Element element = {block.key[i],    block.entry[i], block.own[i],
                                 block.stream[i], block.bits[i],  block.pos[i]};
        ASSERT_TRUE(sameElement(element, plain[rank])) << rank;
        const int bits = palvor::lcpBits(block.entry[i]);
        ASSERT_EQ(block.shortLength[i], std::min(bits, 255));
        ASSERT_EQ(block.unchanged >> i & 1,
                  block.entry[i] == block.own[i] ? 1U : 0U);
        least = std::min(least, bits);
      }
      const int noted = blocks.leasts()[number];
      ASSERT_TRUE(noted == least || (number == 0 && noted < least));
      ASSERT_EQ(blocks.shortLeasts()[number], std::min(noted, 255));
    }
    ASSERT_EQ(rank, plain.size());
  }

  KeyBlocks blocks;
  std::vector<Element> plain;
};

// Fills the blocks up, and empties them, three times.
TEST(KeyBlocks, KeepElementsAsASortedVectorDoes) {
  constexpr int kMost = 1500;
  for (const Processor processor : kProcessors) {
    Pair pair(kMost, processor);
    Randomly random(1);
    for (int step = 0; step < 9000; step++) {
      const int count = static_cast<int>(pair.plain.size());
      const bool fills = step / 1500 % 2 == 0;
      if (count > 0 && (count == kMost || random.oneIn(fills ? 4 : 1))) {
        pair.takeFirst();
      } else if (count > 0 && random.oneIn(8)) {
        ASSERT_NO_FATAL_FAILURE(pair.relate(
            random.below(count), random.element(0), random.below(80)));
      } else {
        ASSERT_NO_FATAL_FAILURE(
            pair.put(random.element(random.key()), random.oneIn(2)));
      }
      if (step % 50 != 0) continue;
      ASSERT_NO_FATAL_FAILURE(pair.expectAlike());
    }
  }
}

TEST(KeyBlocks, StepBetweenPlaces) {
  Pair pair(300, Processor::kBest);
  for (int i = 0; i < 300; i++) pair.put({i, 0, 0, i, 64, 0}, true);
  Place place = pair.blocks.first();
  for (int i = 0; i < 300; i++) {
    ASSERT_TRUE(pair.blocks.isOccupied(place));
    ASSERT_EQ(pair.blocks.streamAt(place), i);
    ASSERT_EQ(pair.blocks.rankOf(place), i);
    const Place next = pair.blocks.after(place);
    ASSERT_EQ(pair.blocks.before(next), place);
    place = next;
  }
  EXPECT_FALSE(pair.blocks.isOccupied(place));
}

// Vectors count whole blocks at once; the portable code, suffix by suffix.
TEST(WalkCost, IsTheSameForEveryProcessor) {
  Randomly random(2);
  for (const int elements : {1, 5, 64, 65, 200, 1500, 6000}) {
    Pair pair(elements, Processor::kBest);
    for (int i = 0; i < elements; i++) {
      pair.put(random.element(random.key()), true);
    }
    for (int round = 0; round < 400; round++) {
      if (round % 8 == 7 && pair.plain.size() > 1) pair.takeFirst();
      const int rank = 1 + random.below(static_cast<int>(pair.plain.size()));
      Place place = pair.blocks.before(
          rank == static_cast<int>(pair.plain.size())
              ? Place{pair.blocks.count() - 1,
                      pair.blocks.block(pair.blocks.count() - 1).end}
              : pair.placeOf(rank));
      place.index++;
      if (random.oneIn(2)) place = pair.blocks.atBegin(place);
      const int bits = 1 + random.below(300);
      const int common = palvor::lcpBits(random.entry());
      palvor::Cost expected;
      palvor::walkCost(Processor::kPortable)(expected, pair.blocks, place, bits,
                                             common);
      for (const Processor processor : kProcessors) {
        palvor::Cost cost;
        palvor::walkCost(processor)(cost, pair.blocks, place, bits, common);
        ASSERT_EQ(countsOf(cost), countsOf(expected))
            << "rank " << rank << " of " << pair.plain.size() << ", " << bits
            << " bits, " << common << " common";
      }
    }
  }
}

}  // namespace
