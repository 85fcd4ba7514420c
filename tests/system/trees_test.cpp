// Tree mode through the real program: palvor-kit check proves every tree,
// whatever the collection and the options. What only a model can tell, the
// bytes of a tree and its statistics, tests/model does.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/tree_reader.h"

namespace {

using testing::HasSubstr;

TEST(Trees, HoldTheirRunOfRepetitiveCollections) {
  std::string fibonacci = "A", before = "C";
  while (fibonacci.size() < 1000) {
    std::swap(fibonacci, before);
    fibonacci += before;
  }
  for (const Collection& collection : std::vector<Collection>{
           {std::vector<std::string>(200, "GATTACAGATC")},
           {{fibonacci, fibonacci.substr(1)}},
           {{std::string(1500, 'A'), std::string(1400, 'A')}}}) {
    const DataFolder folder(collection);
    for (const char* options : {"-n 40", "-H", "-Z -X", "-R -C -M 48"}) {
      ASSERT_NO_FATAL_FAILURE(folder.expectMerge(options));
    }
  }
}

// Deeper than the path stack is at first, and than a recursion could go.
TEST(Trees, MillionEqualCharactersMakeOneTreeAsDeep) {
  constexpr uint32_t kLength = 1'000'000;
  const DataFolder folder({{"A"}});
  folder.writeWords("x.stlengths", {kLength});
  folder.writeWords("x.stblengths", {2 * kLength});
  folder.writeWords("x_0.stbin", std::vector<uint32_t>(kLength / 16 + 1));
  std::vector<uint32_t> records;
  for (uint32_t pos = kLength; pos-- > 0;) {
    records.insert(records.end(), {0, pos, 0, 0});
  }
  folder.writeWords("x_0.stpsa", records);
  const Outcome run = folder.merge("-R -n 2000002");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("maxd=1000000 "));
  EXPECT_THAT(run.err, HasSubstr("maxp=1000001 "));
  const ReadTree tree = readTree(folder.bytes("x_0.stree"));
  ASSERT_EQ(tree.leaves.size(), kLength);
  for (uint32_t i = 0; i < kLength; i++) {
    ASSERT_EQ(tree.leaves[i].first, 2 * (i + 1));
  }
  EXPECT_TRUE(std::is_sorted(tree.visits.begin(), tree.visits.end()));
}

TEST(Trees, StatisticsLines) {
  const std::string said = DataFolder({{"T"}}).merge("-C").err;
  for (const char* line :
       {"# Tree   0:  c3  0  c4  0  c6      0  maxd=1 (",
        " ms), alcp=nan, time ", "#   n/h/c={0/0/0, 1/1/0, 0/0/0}\n",
        "# Merge done: 1, 1 ST, tnp2=",
        "#   maxp=0 tnlcp=0 alcp=0 maxlcp=0 "}) {
    EXPECT_THAT(said, HasSubstr(line));
  }
  const DataFolder long2({{std::string(160, 'C'), std::string(20100, 'C')}});
  EXPECT_THAT(long2.merge("").err, HasSubstr(" maxlcp=40198 "));
}

// LCP files that contradict the order, each with the message that it ends in.
TEST(Trees, ContradictoryLcpsEndTheRun) {
  struct Forgery {
    std::string text;
    std::vector<uint32_t> entries;
    std::string message;
  };
  for (const Forgery& forgery : std::vector<Forgery>{
           // A, ACA, CA: the suffix after A is said to share more than A has.
           {"ACA", {0, 6, 0}, "leaf node above split?? nnode=2 nsuff=2\n"},
           {"ACA", {0, 4, 0}, "firstbit 0, node 5, nsuff 3\n"},
           {"CT", {0, 18}, "leaf node above split?? nnode=2 nsuff=2\n"},
           // C, GC: at the root, which has a left child, then again.
           {"TGC", {0, 1, 1}, "firstbit child (fb=1), nsuff=3\n"},
           {"ACA", {0, 4, 13}, "LCP of 6 bits is beyond the suffix "},
           {"ACA", {0, 12, 0}, "suffix of 6 bits is said to equal"},
           {"CA", {0, 8}, "suffix of 4 bits is said to equal one of 2 bits"},
           // AAC, AAGAAC, AC: at AAC, which has a left child.
           {"AAGAAC",
            {0, 12, 13, 0, 0, 0},
            "LCP of 6 bits is beyond the suffix of 4 bits, "},
           // A, AACA, ACA, CA: the last, 4 bits long, between depths 3 and 6.
           {"AACA",
            {0, 4, 7, 10},
            "LCP of 5 bits is beyond the suffix of 4 bits, nnode=6 nsuff=4\n"},
       }) {
    SCOPED_TRACE(forgery.text + " " + testing::PrintToString(forgery.entries));
    const DataFolder folder({{forgery.text}});
    folder.writeWords("x_0.stlcp", forgery.entries);
    const Outcome run = folder.merge("-Z -n 99");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("## ERROR: " + forgery.message));
    EXPECT_FALSE(folder.holds("x_0.stree"));
  }
}

TEST(Trees, NeedRoomForTheFirstSuffixAndNoMoreThanLinksCanName) {
  for (const char* options : {"-n 1", "-n -1", "-n 2000000000"}) {
    EXPECT_EQ(DataFolder({{"A"}}).merge(options).status, 1);
  }
}

}  // namespace
