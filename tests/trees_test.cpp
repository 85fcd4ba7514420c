// Tree mode through the real program: every tree decodes to its run of the
// merged order, whatever the collection and the options.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/inputs.h"
#include "support/plain_merge.h"
#include "support/program.h"
#include "support/tree_reader.h"

namespace {

using testing::HasSubstr;

struct Divider {
  uint32_t last, first, tree, nodes;
  uint16_t maxDepth;
  uint8_t reserved[6];
};
static_assert(sizeof(Divider) == 24);

std::vector<Divider> dividersOf(const DataFolder& folder) {
  const std::string bytes = folder.bytes("x.stdiv");
  std::vector<Divider> dividers(bytes.size() / sizeof(Divider));
  std::memcpy(dividers.data(), bytes.data(), bytes.size());
  return dividers;
}

std::string treeName(size_t t) { return "x_" + std::to_string(t) + ".stree"; }

uint32_t wordOf(std::string_view text) { return packedWords(text)[0]; }

// All trees, one after the other.
std::vector<std::string> treesOf(const DataFolder& folder) {
  std::vector<std::string> trees;
  for (size_t t = 0; folder.holds(treeName(t)); t++) {
    trees.push_back(folder.bytes(treeName(t)));
  }
  return trees;
}

// Merges into trees and compares what they hold with the plain merge.
void expectTrees(const DataFolder& folder, const Collection& collection,
                 const std::vector<std::string>& options) {
  std::vector<std::string> arguments = {folder.root(), "x"};
  if (collection.zeroOrigin) arguments.push_back("-z");
  arguments.insert(arguments.end(), options.begin(), options.end());
  for (size_t t = 0; folder.holds(treeName(t)); t++) {
    folder.remove(treeName(t));
  }
  const Outcome run = runPalvor(arguments);
  ASSERT_EQ(run.status, 0) << run.err;

  const std::vector<Divider> dividers = dividersOf(folder);
  const std::vector<std::string> trees = treesOf(folder);
  ASSERT_EQ(trees.size(), dividers.size());
  const auto given = [&](const char* option) {
    return std::find(options.begin(), options.end(), option) != options.end();
  };
  const PlainArray plain =
      plainMerge(collection, given("-H") ? Ties::kByInput : Ties::kByArrival);
  size_t next = 0;
  for (size_t t = 0; t < trees.size(); t++) {
    SCOPED_TRACE(treeName(t));
    const ReadTree tree = readTree(trees[t]);
    ASSERT_LE(next + tree.leaves.size(), plain.texts.size());
    // Equal suffixes may stand in any order, so inputs are compared sorted.
    std::vector<Leaf> expected, found = tree.leaves;
    for (size_t i = 0; i < tree.leaves.size(); i++) {
      const size_t at = next + i;
      expected.emplace_back(2 * plain.texts[at].size(),
                            plain.records[at][0] >> 2);
      ASSERT_EQ(tree.leaves[i].first, expected.back().first) << "leaf " << i;
      const std::string& text = collection.texts[tree.leaves[i].second];
      ASSERT_TRUE(text.ends_with(plain.texts[at])) << "leaf " << i;
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    ASSERT_EQ(found, expected);
    const size_t last = next + tree.leaves.size() - 1;
    const Divider& divider = dividers[t];
    EXPECT_EQ(divider.tree, t);
    EXPECT_EQ(divider.nodes, trees[t].size() / 12);
    EXPECT_EQ(divider.maxDepth, tree.maxDepth);
    EXPECT_EQ(divider.first, wordOf(plain.texts[next]));
    EXPECT_EQ(divider.last, wordOf(plain.texts[last]));
    EXPECT_THAT(divider.reserved, testing::Each(0));
    if (given("-R")) {
      EXPECT_TRUE(std::is_sorted(tree.visits.begin(), tree.visits.end()));
    }
    next = last + 1;
  }
  EXPECT_EQ(next, plain.texts.size());
}

const std::vector<std::vector<std::string>> kOptions = {
    {"-q"}, {"-q", "-H"}, {"-q", "-Z", "-X"}, {"-q", "-R", "-C", "-M", "48"}};

void expectTreesInAllModes(const Collection& collection) {
  SCOPED_TRACE(described(collection).substr(0, 2000));
  const DataFolder folder(collection);
  for (std::vector<std::string> options : kOptions) {
    for (const char* limit : {"2", "3", "4", "9", "40"}) {
      SCOPED_TRACE(testing::PrintToString(options) + " -n " + limit);
      std::vector<std::string> all = options;
      all.insert(all.end(), {"-n", limit});
      ASSERT_NO_FATAL_FAILURE(expectTrees(folder, collection, all));
    }
  }
}

std::string repeated(const std::string& text, size_t times) {
  std::string result;
  for (size_t i = 0; i < times; i++) result += text;
  return result;
}

TEST(Trees, HoldTheirRunOfSmallCollections) {
  const std::vector<Collection> collections = {
      {{"A"}},
      {{"T"}},
      {{"G", "G", "G"}},
      {{"ACGT"}},
      {{"TTTT", "TT"}},
      {{"GATTACA", "CATTACA", "TACA", "GATTACA"}},
      {{"GATC", "", "GA"}},
      {{"ACAC", "CACA", "AC", "GGAC"}, {1, 2, 1}, true},
  };
  for (const Collection& collection : collections) {
    ASSERT_NO_FATAL_FAILURE(expectTreesInAllModes(collection));
  }
}

TEST(Trees, HoldTheirRunOfRepetitiveCollections) {
  std::string fibonacci = "A", before = "C";
  while (fibonacci.size() < 1000) {
    std::swap(fibonacci, before);
    fibonacci += before;
  }
  const std::vector<Collection> collections = {
      {std::vector<std::string>(200, "GATTACAGATC")},
      {{repeated("ACG", 700)}},
      {{fibonacci, fibonacci.substr(1)}},
      {{repeated("A", 1500), repeated("A", 1400)}},
  };
  for (const Collection& collection : collections) {
    SCOPED_TRACE(collection.texts[0].substr(0, 20));
    const DataFolder folder(collection);
    for (const auto& options : kOptions) {
      ASSERT_NO_FATAL_FAILURE(expectTrees(folder, collection, options));
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
  const Outcome run = runPalvor({folder.root(), "x", "-R", "-n", "2000002"});
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

TEST(Trees, ReorderingAndCountingKeepTheTree) {
  const Collection collection = {{"GATTACAGATTACA", "CATTACAGA", "TACAGATT"}};
  const DataFolder folder(collection);
  ASSERT_EQ(runPalvor({folder.root(), "x", "-q"}).status, 0);
  const std::vector<std::string> plain = treesOf(folder);
  const std::string dividers = folder.bytes("x.stdiv");

  const Outcome counted = runPalvor({folder.root(), "x", "-C"});
  EXPECT_EQ(treesOf(folder), plain);
  EXPECT_EQ(folder.bytes("x.stdiv"), dividers);
  const ReadTree tree = readTree(plain.at(0));
  char line[200];
  std::snprintf(
      line, sizeof line, "#   nl/nt/ni/nl/nr/ne/nd=%d/%d/%d/%d/%d/%d/%d\n",
      static_cast<int>(tree.leaves.size()), tree.leafHeads, tree.internals,
      tree.lefts, tree.rights, tree.emptyLinks, tree.duplicateLinks);
  EXPECT_THAT(counted.err, HasSubstr(line));

  ASSERT_EQ(runPalvor({folder.root(), "x", "-q", "-R"}).status, 0);
  EXPECT_NE(treesOf(folder), plain);
  EXPECT_EQ(readTree(treesOf(folder).at(0)).leaves, tree.leaves);
}

TEST(Trees, BytesOfOneSuffixAndOfTwo) {
  const DataFolder folder({{"GA"}});
  folder.writeWords("x_0.stpsa", {0 << 2 | 1, 1, 0, 0,  //
                                  0 << 2 | 2, 0, 2u << 30, 0});
  ASSERT_EQ(runPalvor({folder.root(), "x", "-n", "3", "-q"}).status, 0);
  EXPECT_THAT(treesOf(folder),
              testing::ElementsAre(bytesOf({0, 1 << 2, 0, 2, 1, 1}),
                                   bytesOf({0, 0, 1 << 2, 4, 1, 2})));
  // AC and AA part at bit 3, after a prefix of 3 bits.
  const DataFolder two({{"AA", "AC"}});
  two.writeWords("x_0.stpsa", {0 << 2 | 2, 0, 0, 0});
  two.writeWords("x_1.stpsa", {1 << 2 | 1, 0, 1u << 28, 0});
  ASSERT_EQ(runPalvor({two.root(), "x", "-n", "9", "-q"}).status, 0);
  EXPECT_THAT(treesOf(two), testing::ElementsAre(bytesOf({0, 2 << 2, 0,       //
                                                          1, 0 << 2 | 1, 2,   //
                                                          3, 1 << 2, 3 << 2,  //
                                                          1, 1 << 2 | 1, 1})));
}

TEST(Trees, StatisticsLines) {
  const DataFolder one({{"T"}});
  const Outcome run = runPalvor({one.root(), "x", "-C"});
  EXPECT_THAT(run.err,
              HasSubstr("# Tree   0:  c3  0  c4  0  c6      0  maxd=1 ("));
  EXPECT_THAT(run.err, HasSubstr(" ms), alcp=nan, time "));
  EXPECT_THAT(run.err, HasSubstr("#   n/h/c={0/0/0, 1/1/0, 0/0/0}\n"));
  EXPECT_THAT(run.err, HasSubstr("# Merge done: 1, 1 ST, tnp2="));
  EXPECT_THAT(run.err, HasSubstr("#   maxp=0 tnlcp=0 alcp=0 maxlcp=0 "));

  const DataFolder long2({{std::string(160, 'C'), std::string(20100, 'C')}});
  EXPECT_THAT(runPalvor({long2.root(), "x"}).err, HasSubstr(" maxlcp=40198 "));
}

// LCP files that contradict the order, each with the message that it ends in.
struct Forgery {
  std::vector<std::string> texts;
  std::vector<uint32_t> entries;  // of input 0
  std::string message;
};

TEST(Trees, ContradictoryLcpsEndTheRun) {
  const std::vector<Forgery> forgeries = {
      // A, ACA, CA: the suffix after A is said to share more than A has.
      {{"ACA"}, {0, 3 << 1, 0}, "leaf node above split?? nnode=2 nsuff=2\n"},
      {{"ACA"}, {0, 2 << 1, 0}, "firstbit 0, node 5, nsuff 3\n"},
      {{"CT"}, {0, 9 << 1}, "leaf node above split?? nnode=2 nsuff=2\n"},
      // C, GC: at the root, which has a left child, then again.
      {{"TGC"},
       {0, 0 << 1 | 1, 0 << 1 | 1},
       "firstbit child (fb=1), nsuff=3\n"},
      {{"ACA"}, {0, 2 << 1, 6 << 1 | 1}, "LCP of 6 bits is beyond the suffix "},
      {{"ACA"}, {0, 6 << 1, 0}, "suffix of 6 bits is said to equal"},
      {{"CA"}, {0, 4 << 1}, "suffix of 4 bits is said to equal one of 2 bits"},
      // A, AACA, ACA, CA: the last, 4 bits long, between depths 3 and 6.
      {{"AACA"},
       {0, 2 << 1, 3 << 1 | 1, 5 << 1},
       "LCP of 5 bits is beyond the suffix of 4 bits, nnode=6 nsuff=4\n"},
  };
  for (const Forgery& forgery : forgeries) {
    SCOPED_TRACE(forgery.texts[0] + " " +
                 testing::PrintToString(forgery.entries));
    const DataFolder folder({forgery.texts});
    folder.writeWords("x_0.stlcp", forgery.entries);
    const Outcome run = runPalvor({folder.root(), "x", "-Z", "-n", "99"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("## ERROR: " + forgery.message));
    EXPECT_FALSE(folder.holds("x_0.stree"));
  }
}

TEST(Trees, OutputThatCannotBeWrittenEndsTheRun) {
  const Collection collection = {{"GATTACA"}};
  const DataFolder full(collection), folder(collection), dividers(collection);
  full.replaceByFullDevice("x_0.stree");
  EXPECT_THAT(runPalvor({full.root(), "x", "-n", "99"}).err,
              HasSubstr("## ERROR: not all output tree nodes were written: -1 "
                        "bytes and 12 Nodes\n"));
  folder.replaceByFolder("x_0.stree");
  EXPECT_THAT(runPalvor({folder.root(), "x"}).err,
              HasSubstr("## ERROR: cannot open suffix array " +
                        folder.path("x_0.stree") + " for writing tree\n"));
  dividers.replaceByFullDevice("x.stdiv");
  EXPECT_THAT(runPalvor({dividers.root(), "x"}).err,
              HasSubstr("## ERROR: could not write current divider element\n"));
  for (const char* limit : {"1", "-1", "2000000000"}) {
    const Outcome run = runPalvor({folder.root(), "x", "-n", limit});
    EXPECT_EQ(run.status, 1) << limit;
  }
}

}  // namespace
