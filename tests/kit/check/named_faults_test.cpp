// Every fault that palvor-kit check finds is named: the file, the record, and
// what was expected.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kit/check/made_files.h"

namespace {

using testing::HasSubstr;

// Words of a node of tree "_0" or "_1".
Change edge(const std::string& tree, size_t record, uint32_t bits) {
  return set(tree + ".stree", 3 * record, bits);
}
Change left(const std::string& tree, size_t record, uint32_t link) {
  return set(tree + ".stree", 3 * record + 1, link);
}
Change right(const std::string& tree, size_t record, uint32_t link) {
  return set(tree + ".stree", 3 * record + 2, link);
}

// The arrays are those of GATTC: ATTC C GATTC TC TTC, of GA: A GA, and of both:
// A ATTC C GA GATTC TC TTC. The trees' records, edges in bits:
//
//   d_0.stree   0 ─┬─ 4 (1) ─┬─ 1 (1) and 2: A ─── 3 (6): ATTC
//                  │         └─ 5 (1): C
//                  └─ 6 (4) and 7: GA ─── 8 (6): GATTC
//   d_1.stree   0 ─── 2 (2) ─┬─ 1 (2): TC
//                            └─ 3 (4): TTC
class CheckNames : public testing::Test {
 protected:
  Outcome checkWith(const std::vector<Change>& changes) const {
    Files files = right_;
    for (const Change& change : changes) change(files);
    return check(files);
  }

  // Expects that this is said, after "d", of the files so changed.
  void expect(const std::vector<Change>& changes, const std::string& fault) {
    const Outcome run = checkWith(changes);
    EXPECT_EQ(run.status, 1) << fault;
    EXPECT_THAT(run.out, HasSubstr("/d.ST/d" + fault));
  }

  const Files right_ = allMadeOf(">x\nGATTC\n", ">y\nGA\n", 9);
};

TEST_F(CheckNames, NothingThatIsRight) { EXPECT_EQ(check(right_).status, 0); }

TEST_F(CheckNames, WrongLengths) {
  expect({set(".stlengths", 1, 3)},
         ".stblengths: record 1: 4 bits, expected 6, two for each character");
  expect({set(".stblengths", 0, 8)},
         ".stblengths: record 0: 8 bits, expected 10, two for each character");
  expect({cut(".stblengths", 4)},
         ".stblengths: 1 entries, expected 2, as many as in the lengths file");
  expect({set(".stlengths", 1, 1U << 30), set(".stblengths", 1, 1U << 31)},
         ".stlengths: record 1: 1073741824 characters, expected at most "
         "1073741823");
  expect({set(".stplengths", 0, 1), set(".stplengths", 1, 2)},
         ".stplengths: the partitions do not cover the 2 inputs just once");
  expect({set(".stplengths", 0, 2), lose(".inputs.tsv")},
         "_0.stpsa: 5 of 7 records: unfinished");
}

TEST_F(CheckNames, WrongStrings) {
  expect({lose("_1.stbin")}, "_1.stbin: No such file or directory");
  expect({cut("_1.stbin", 8)},
         "_1.stbin: 0 bytes are too few for a string of 2 characters");
  expect({cut("_1.stbin", 4)}, "_1.stbin: 1 words, expected 2");
  expect({set("_0.stbin", 1, 1)},
         "_0.stbin: record 1: the trailer word is not zero");
  expect({set("_0.stbin", 0, 0x8F400001)},
         "_0.stbin: record 0: bits after the last character are not zero");
  expect({set("_1.stbin", 0, 0x90000000)},  // GC
         "_1.stpsa: record 0: prefix words 00000000 00000000, expected "
         "40000000 00000000");
}

TEST_F(CheckNames, WrongSuffixArrays) {
  expect({lose("_1.stpsa")}, "_1.stpsa: No such file or directory");
  expect({cut("_1.stpsa", 1)},
         "_1.stpsa: 31 bytes are not a whole number of records of 16 bytes");
  expect({exchange("_0.stpsa", 3)},
         "_0.stpsa: record 4: suffix 3 of input 0 sorts before suffix 2 of "
         "input 0, which stands before it");
  expect({repeat("_0.stpsa", 3)},
         "_0.stpsa: record 4: suffix 3 of input 0 is there a second time");
  expect({cut("_0.stpsa", kSuffix), cut("_0.stlcp", 4)},
         "_0.stpsa: 4 of 5 records: unfinished");
  expect({suffix("_0.stpsa", 1, 0, 1 << 2)},
         "_0.stpsa: record 1: input 1 is not one of this array's");
  expect({suffix("_0.stpsa", 1, 1, 5)},
         "_0.stpsa: record 1: there is no suffix 5 of input 0");
  expect({suffix("_0.stpsa", 2, 2, 0x8F500000)},
         "_0.stpsa: record 2: prefix words 8F500000 00000000, expected "
         "8F400000 00000000");
  expect({suffix("_0.stpsa", 2, 3, 1)},
         "_0.stpsa: record 2: prefix words 8F400000 00000001, expected "
         "8F400000 00000000");
  expect({set("_0.stlcp", 4, 3 << 1 | 1)},
         "_0.stlcp: record 4: entry 7, expected 5");
  expect({set("_0.stlcp", 3, 1 << 1)},
         "_0.stlcp: record 3: entry 2, expected 3");
  expect({cut("_0.stlcp", 4)},
         "_0.stlcp: 4 entries, expected 5, as many as records");
}

TEST_F(CheckNames, AWrongMergedArray) {
  expect({suffix(".stpsa", 6, 0, 2 << 2)},
         ".stpsa: record 6: input 2 is not one of this array's");
  expect({suffix(".stpsa", 3, 1, 2)},
         ".stpsa: record 3: there is no suffix 2 of input 1");
  expect({exchange(".stpsa", 3)},
         ".stpsa: record 4: suffix 0 of input 1 sorts before suffix 0 of "
         "input 0, which stands before it");
  expect({repeat(".stpsa", 5)},
         ".stpsa: record 6: suffix 3 of input 0 is there a second time");
  expect({suffix(".stpsa", 4, 2, 0x8F400001)},
         ".stpsa: record 4: prefix words 8F400001 00000000, expected 8F400000 "
         "00000000");
  expect({cut(".stpsa", kSuffix), cut(".stlcp", 4)},
         ".stpsa: 6 of 7 records: unfinished");
  expect({set(".stlcp", 4, 0)}, ".stlcp: record 4: entry 0, expected 8");
  expect({cut(".stlcp", 4)},
         ".stlcp: 6 entries, expected 7, as many as records");
  expect({lose(".stpsa"), lose(".stdiv")},
         ": neither a merged array (.stpsa) nor trees (.stdiv)");
}

TEST_F(CheckNames, LinksThatMakeNoTree) {
  expect({right("_0", 0, 9 << 2)}, "_0.stree: record 0: there is no record 9");
  // A cycle, and a subtree of two parents.
  expect({left("_0", 1, 4 << 2 | 2)},
         "_0.stree: record 4: reached a second time");
  expect({right("_0", 4, 3 << 2)}, "_0.stree: record 3: reached a second time");
  // A record of no parent.
  expect({right("_1", 4, 0), set(".stdiv", 9, 5)},
         "_1.stree: record 4: not reached from the root");
  expect({right("_1", 2, 0)},
         "_1.stree: record 2: neither two children, nor a group and a left "
         "child");
  expect({left("_1", 3, 3)},
         "_1.stree: record 3: a group runs past the last record");
  expect({left("_1", 0, 2 << 2), right("_1", 0, 0)},
         "_1.stree: record 0: its only child is on the wrong side");
  expect({right("_0", 5, 1 << 2)}, "_0.stree: record 5: a leaf with a child");
}

TEST_F(CheckNames, EdgesAndLeavesOfOtherSuffixes) {
  expect({edge("_0", 2, 2)},
         "_0.stree: record 2: not a leaf with its group's edge of 1 bits");
  expect({edge("_0", 3, 5)},
         "_0.stree: record 3: input 0 has no suffix of 7 bits");
  expect({edge("_0", 3, 8)},
         "_0.stree: record 3: branches off after 2 bits, expected 0");
  expect({edge("_0", 5, 0)}, "_0.stree: record 5: an edge of no bits");
  // A branch too low, and children exchanged.
  expect({edge("_1", 2, 3), edge("_1", 1, 1), edge("_1", 3, 3)},
         "_1.stree: record 3: branches off after 3 bits, expected 2");
  expect({left("_1", 2, 3 << 2), right("_1", 2, 1 << 2)},
         "_1.stree: record 1: suffix 3 of input 0 sorts before suffix 2 of "
         "input 0, which stands before it");
  expect({left("_0", 5, 2 << 2 | 1)},
         "_0.stree: record 5: input 2 has no suffix of 2 bits");
  expect({edge("_1", 0, 2)},
         "_1.stree: record 0: a root has no edge and no group, and is no leaf");
}

TEST_F(CheckNames, TreesAndDividersThatDisagree) {
  expect({lose("_1.stree")}, "_1.stree: No such file or directory");
  expect({cut("_0.stree", 12)},
         "_0.stree: 8 records, expected 9 by its divider");
  expect({right("_1", 4, 0)}, "_1.stree: 5 records, expected 4 by its divider");
  // Dividers have six words each.
  expect({set(".stdiv", 8, 2)}, ".stdiv: record 1: tree 2, expected 1");
  expect({set(".stdiv", 9, 5)},
         "_1.stree: 4 records, expected 5 by its divider");
  expect({set(".stdiv", 10, 3)}, "_1.stree: node depth 2, its divider says 3");
  expect({set(".stdiv", 0, 0x8F500000)},
         "_0.stree: last prefix 8F400000, its divider says 8F500000");
  expect({set(".stdiv", 1, 1)},
         "_0.stree: first prefix 00000000, its divider says 00000001");
  expect({set(".stdiv", 11, 1)},
         ".stdiv: record 1: reserved bytes that are not zero");
  expect({cut(".stdiv", 24), lose("_1.stree")},
         ".stdiv: 5 of 7 suffixes: unfinished, suffix 2 of input 0 is in no "
         "tree");
}

TEST_F(CheckNames, WhatOtherRunsLeft) {
  expect({[](Files& files) { files["d_7.stree"] = files["d_1.stree"]; }},
         "_7.stree: not one of the 2 trees that ");
  // An array written after trees.
  expect({lose(".stdiv")}, "_0.stree: not one of the 0 trees that ");
}

TEST_F(CheckNames, TablesOfInputsThatLie) {
  const auto table = [](const std::string& text) -> Change {
    return [=](Files& files) { files["d.inputs.tsv"] = text; };
  };
  const std::string first = "0\t0\ta.fa\tx\t0\t5\n";
  EXPECT_EQ(checkWith({table(first + "1\t1\tb.fa\t\\t\\n\t7\t2\n")}).status, 0);
  EXPECT_EQ(checkWith({table("0\t0\ta.fa\tx\t0\t5\t+\n"
                             "1\t1\ta.fa\tx\t0\t2\t-\n")})
                .status,
            0);
  expect({table("")}, ".inputs.tsv: 0 lines, expected 2, one for each input");
  expect({table(first)}, ".inputs.tsv: 1 lines, expected 2");
  expect({table(first + "1\t1\tb.fa\ty\t0\t3\n")},
         ".inputs.tsv: line 2: 3 characters, expected 2");
  expect({table(first + "1\t0\tb.fa\ty\t0\t2\n")},
         ".inputs.tsv: line 2: suffix array 0, expected 1");
  expect({table(first + first)}, ".inputs.tsv: line 2: input 0, expected 1");
  expect({table(first + "1\t1\tb.fa\ty\n")},
         ".inputs.tsv: line 2: too few fields");
  expect({table(first + "1\t1\tb.fa\ty\t0\t2\t?\n")},
         ".inputs.tsv: line 2: '?' is no strand, + or -");
  expect({table(first + "1\t1\tb.fa\ty\t0\t2\t+\tmore\n")},
         ".inputs.tsv: line 2: too many fields");
  expect({table(first + "1\t1\tb.fa\ty\t-1\t2\n")},
         ".inputs.tsv: line 2: '-1' is no number");
  expect({table(first + "1\t1\tb.fa\ty\\\t0\t2\n")},
         ".inputs.tsv: line 2: ends within an escaped character");
  expect({table(first + "1\t1\tb.fa\ty\t0\t2")},
         ".inputs.tsv: line 2: ends within a line");
}

}  // namespace
