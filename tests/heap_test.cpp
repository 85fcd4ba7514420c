#include "merge/heap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "merge/front.h"
#include "output/counters.h"
#include "support/inputs.h"

namespace {

// One stream for each text, whose current suffix is the whole text.
class MergeHeap : public testing::Test {
 protected:
  void hold(const std::vector<std::string>& texts) {
    useInputs(texts);
    suffixes_.clear();
    pointers_.clear();
    const int k = static_cast<int>(texts.size());
    for (int i = 0; i < k; i++) suffixes_.push_back(suffixAt(i, 0));
    for (Suffix& suffix : suffixes_) pointers_.push_back(&suffix);
    Suffixes = pointers_.data();
    allocateHeap(k);
    heapCounter = 0;
    nncmp = 0;
    for (int i = 0; i < k; i++) insertIntoHeap(i);
  }

  // The order in which the streams come out, one suffix each.
  std::vector<int> drained() {
    std::vector<int> order;
    while (heapCounter > 0) {
      order.push_back(Heap[0]);
      adjHeap(0);
    }
    return order;
  }

  std::vector<Suffix> suffixes_;
  std::vector<Suffix*> pointers_;
};

TEST_F(MergeHeap, HandsOutInSuffixOrderAndEqualSuffixesByInput) {
  const std::vector<std::pair<std::vector<std::string>, std::vector<int>>>
      rows = {
          {{"A"}, {0}},
          {{"T", "A"}, {1, 0}},
          {{"G", "A", "T"}, {1, 0, 2}},
          {{"CC", "C", "CCC", "CA"}, {1, 3, 0, 2}},
          {{"C", "C", "C", "C", "C"}, {0, 1, 2, 3, 4}},
          {{"T", "G", "C", "A", "T", "G", "C", "A"}, {3, 7, 2, 6, 1, 5, 0, 4}},
      };
  for (const auto& [texts, order] : rows) {
    hold(texts);
    EXPECT_EQ(drained(), order) << testing::PrintToString(texts);
  }
}

TEST_F(MergeHeap, SinksAStreamThatHasMore) {
  hold({"A", "C", "G", "T", "CG"});
  EXPECT_EQ(Heap[0], 0);
  useInputs({"GT", "C", "G", "T", "CG"});
  suffixes_[0] = suffixAt(0, 0);  // stream 0's next suffix
  adjHeap(1);
  EXPECT_EQ(drained(), (std::vector<int>{1, 4, 2, 0, 3}));
}

TEST_F(MergeHeap, CountsEveryComparison) {
  hold({"G", "A", "T"});  // A passes G; T stays below A
  EXPECT_EQ(nncmp, 2);
  adjHeap(1);  // the children first, then the head with the smaller
  EXPECT_EQ(nncmp, 4);
  adjHeap(0);  // two are left: one comparison
  EXPECT_EQ(nncmp, 5);
  adjHeap(0);
  adjHeap(0);
  EXPECT_EQ(nncmp, 5);
  EXPECT_EQ(heapCounter, 0);
}

}  // namespace
