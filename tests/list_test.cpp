#include "merge/list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "merge/front.h"
#include "output/counters.h"
#include "support/inputs.h"

namespace {

std::vector<int> listed() {
  std::vector<int> streams;
  for (int k = Lfst; k >= 0; k = LNXT[k]) streams.push_back(k);
  return streams;
}

class MergeList : public testing::Test {
 protected:
  // A list of one stream for each text, in this order, with these stored
  // lengths; and one stream more, not in the list, whose suffix is the last
  // text.
  void hold(const std::vector<std::string>& texts,
            const std::vector<int>& storedBits) {
    useInputs(texts);
    const int k = static_cast<int>(texts.size());
    suffixes_.clear();
    pointers_.clear();
    for (int i = 0; i < k; i++) suffixes_.push_back(suffixAt(i, 0));
    for (Suffix& suffix : suffixes_) pointers_.push_back(&suffix);
    Suffixes = pointers_.data();
    allocateList(k);
    for (int i = 0; i < k - 1; i++) {
      LNXT[i] = i + 1 < k - 1 ? i + 1 : -1;
      LLCP[i] = makeLcpEntry(storedBits[static_cast<size_t>(i)], 1);
    }
    Lfst = k > 1 ? 0 : -1;
    nlcmp = nncmp = nnac = nnrc = nnoc = 0;
  }

  std::vector<Suffix> suffixes_;
  std::vector<Suffix*> pointers_;
};

TEST_F(MergeList, PlacesASuffixByStoredLengthsAlone) {
  struct Row {
    int shared;
    std::vector<int> order;
    int examined;
  };
  for (const Row& row : {Row{9, {3, 0, 1, 2}, 1}, Row{6, {0, 1, 3, 2}, 3},
                         Row{3, {0, 1, 2, 3}, 3}}) {
    SCOPED_TRACE(row.shared);
    hold({"A", "A", "A", "A"}, {8, 10, 4});
    currlcp = row.shared;
    currfbt = 1;
    addList(3);
    EXPECT_EQ(listed(), row.order);
    EXPECT_EQ(nlcmp, row.examined);
    EXPECT_EQ(nncmp, 0);
    EXPECT_EQ(LLCP[3], makeLcpEntry(row.shared, 1));
    EXPECT_EQ(LLCP[0], makeLcpEntry(8, 1));
    EXPECT_EQ(LLCP[2], makeLcpEntry(4, 1));
  }
}

TEST_F(MergeList, ComparesWhereLengthsAreEqual) {
  hold({"CA", "CC", "CG", "CT"}, {2, 2, 2});
  currlcp = 2;
  currfbt = 1;
  addList(3);
  EXPECT_EQ(listed(), (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(LLCP[3], makeLcpEntry(3, 1));
  // After CA and CC, which share 2 bits with it, CG shares 3 with CC's word.
  EXPECT_EQ(nncmp, 3);
  EXPECT_EQ(nlcmp, 3);

  hold({"CG", "CA"}, {2});
  currlcp = 2;
  addList(1);
  EXPECT_EQ(listed(), (std::vector<int>{1, 0}));
  EXPECT_EQ(LLCP[1], makeLcpEntry(2, 1)) << "what the other one had";
  EXPECT_EQ(LLCP[0], makeLcpEntry(2, 1));
}

TEST_F(MergeList, CountsLongCommonPrefixes) {
  const std::string c31(31, 'C'), c64(64, 'C');
  struct Row {
    std::string listed, added;
    int shared, nac, nrc;
  };
  for (const Row& row : {Row{c31 + "A", c31 + "T", 0, 0, 0},
                         Row{c31 + "CA", c31 + "CC", 0, 1, 1},
                         Row{c64 + "A", c64 + "T", 64, 1, 1},
                         Row{c64 + "A", c64 + "T", 65, 1, 0}}) {
    SCOPED_TRACE(row.listed + " " + row.added);
    hold({row.listed, row.added}, {row.shared});
    LOCP[0] = LLCP[0] ^ 1;  // not equal as a whole
    currlcp = row.shared;
    addList(1);
    EXPECT_EQ(nnac, row.nac);
    EXPECT_EQ(nnrc, row.nrc);
    EXPECT_EQ(nnoc, 0);
  }
  hold({"A", "T"}, {0});
  LOCP[0] = LLCP[0];
  currlcp = 0;
  addList(1);
  EXPECT_EQ(nnoc, 1);
}

TEST_F(MergeList, PutsAnEqualSuffixBehindTheOneListed) {
  hold({"GATTACA", "GATTACA"}, {0});
  currlcp = 0;
  addList(1);
  EXPECT_EQ(listed(), (std::vector<int>{0, 1}));
  EXPECT_EQ(LLCP[1], makeLcpEntry(14, 0));
  hold({"GATTACA"}, {});
  addList(0);
  addList(-1);
  addList(0);
  EXPECT_EQ(nlcmp, 0) << "an empty list has nothing to look at";
}

}  // namespace
