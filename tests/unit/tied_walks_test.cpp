// What walks would have done among suffixes of equal prefix words, counted
// afterwards, against walks that are done.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "unit/tied_walks_test.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "palvor/order/tied_walks-inl.h"
#include "palvor/simd/target.h"

#ifndef TIED_WALKS_TEST_ONCE_
#define TIED_WALKS_TEST_ONCE_

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "palvor/text/compare.h"
#include "support/engine.h"

namespace {

struct Visitor {
  int time;
  uint32_t position;
  palvor::LcpEntry own;
  palvor::LcpEntry outside;
  bool isLast;
};

// In order; each with its entry with the one before.
struct Group {
  std::vector<Visitor> visitors;
  std::vector<palvor::LcpEntry> entries;
};

}  // namespace

#endif  // TIED_WALKS_TEST_ONCE_

PALVOR_BEFORE_NAMESPACE();
namespace palvor {
namespace HWY_NAMESPACE {
namespace {

bool countAfterwards(const std::vector<Group>& groups, Cost& cost) {
#if PALVOR_HAS_VECTORS
  TiedWalks walks;
  for (const Group& group : groups) {
    const int count = static_cast<int>(group.visitors.size());
    walks.begin(count, cost);
    for (int i = 0; i < count; i++) {
      const Visitor& one = group.visitors[static_cast<size_t>(i)];
      walks.put(i, {one.time, one.position, one.own, one.outside, one.isLast});
      if (i > 0) walks.putEntry(i, group.entries[static_cast<size_t>(i)]);
    }
    walks.end(count);
  }
  walks.flush(cost);
  return true;
#else
  return groups.empty() && cost.comparisons == 0;
#endif
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace palvor
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace palvor {
namespace {
auto counterFor(Processor processor) {
  return choose(PALVOR_VERSIONS(countAfterwards), processor);
}
}  // namespace
}  // namespace palvor

namespace {

using palvor::Cost;
using palvor::lcpBits;
using palvor::LcpEntry;

// Of two that stand apart in order.
LcpEntry entryBetween(const Group& group, size_t a, size_t b) {
  return *std::min_element(
      group.entries.begin() + static_cast<int64_t>(std::min(a, b)) + 1,
      group.entries.begin() + static_cast<int64_t>(std::max(a, b)) + 1);
}

// Walks those that were there when one came.
void walk(const Group& group, size_t comer, Cost& cost) {
  const Visitor& one = group.visitors[comer];
  LcpEntry shared = one.outside;
  int rows = 0;
  bool hasPassedAll = true;
  size_t before = comer;
  for (size_t i = 0; i < group.visitors.size(); i++) {
    if (group.visitors[i].time >= one.time) continue;
    const LcpEntry stored =
        before == comer ? one.outside : entryBetween(group, before, i);
    before = i;
    rows++;
    if (lcpBits(shared) > lcpBits(stored)) {
      hasPassedAll = false;
      break;
    }
    if (lcpBits(shared) < lcpBits(stored)) continue;
    const LcpEntry found = entryBetween(group, i, comer);
    const int known = lcpBits(shared);
    const int common = lcpBits(found);
    const int shorter = common + palvor::lcpFirstbit(found);
    cost.addListed(known, common, group.visitors[i].own == stored);
    cost.words += palvor::wordsExamined(group.visitors[i].position, shorter,
                                        known, common);
    if (i > comer) {
      hasPassedAll = false;
      break;
    }
    shared = found;
  }
  // The first row was counted on the way to the group; behind those that are
  // passed there is one more, unless they are the last.
  cost.positions += rows - 1 + (hasPassedAll && !one.isLast ? 1 : 0);
}

class TiedWalks : public testing::Test {
 protected:
  int below(int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random_);
  }

  // Suffixes that share `least` bits or more, by `range` at most.
  Group makeGroup(int count, int least, int range) {
    Group group;
    std::vector<int> times(static_cast<size_t>(count));
    for (int i = 0; i < count; i++) times[static_cast<size_t>(i)] = i;
    std::ranges::shuffle(times, random_);
    // What is stored with the first one is what keys tell, as long as none of
    // another key comes between.
    LcpEntry outside = palvor::makeLcpEntry(below(64), 1);
    for (const int time : times) {
      if (below(8) == 0) outside = palvor::makeLcpEntry(below(64), 1);
      group.visitors.push_back(
          {time, static_cast<uint32_t>(below(1000)),
           below(3) == 0 ? outside : palvor::makeLcpEntry(below(64), 1),
           outside, below(2) == 0});
      group.entries.push_back(
          palvor::makeLcpEntry(least + below(range), below(2)));
    }
    return group;
  }

  void expectAlike(const std::vector<Group>& groups) {
    Cost expected;
    for (const Group& group : groups) {
      for (size_t i = 0; i < group.visitors.size(); i++) {
        if (group.visitors[i].time > 0) walk(group, i, expected);
      }
    }
    for (const palvor::Processor processor :
         {palvor::Processor::kBest, palvor::Processor::kAvx2}) {
      Cost counted;
      if (!palvor::counterFor(processor)(groups, counted)) {
        GTEST_SKIP() << "no vectors";
      }
      EXPECT_EQ(countsOf(counted), countsOf(expected));
    }
  }

 private:
  std::mt19937 random_{1};
};

TEST_F(TiedWalks, CountWhatIsWalked) {
  for (const int most : {2, 3, 17, 64}) {
    SCOPED_TRACE(most);
    std::vector<Group> groups;
    groups.reserve(300);
    for (int g = 0; g < 300; g++) {
      groups.push_back(
          makeGroup(2 + below(most - 1), 64, g % 2 == 0 ? 20 : 5000));
    }
    expectAlike(groups);
  }
}

// Strains of whole chromosomes share hundreds of millions of characters.
TEST_F(TiedWalks, CountMoreWordsThanFitIntoALane) {
  std::vector<Group> groups;
  groups.reserve(20);
  for (int g = 0; g < 20; g++) {
    groups.push_back(makeGroup(64, palvor::kLcpLimit - 5000, 5000));
  }
  expectAlike(groups);
}

}  // namespace

#endif  // HWY_ONCE
