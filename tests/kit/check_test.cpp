// palvor-kit check through the real program: what is right passes, and every
// damage is named.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;

using Files = std::map<std::string, std::string>;  // of d.ST/, by their names

// A data folder of sequence files, with all that palvor makes of it: the merged
// array, and trees of at most so many records.
Files allMadeOf(const std::string& a, const std::string& b, int nodes) {
  const TemporaryFolder folder;
  const std::string root = folder.path("");
  const std::string trees = std::to_string(nodes);
  EXPECT_EQ(runKit({"prepare", "-o", root, "-p", "d", "--lcp",
                    folder.write("a.fa", a), folder.write("b.fa", b)})
                .status,
            0);
  EXPECT_EQ(runPalvor({root, "d", "-a", "-l", "-q"}).status, 0);
  EXPECT_EQ(runPalvor({root, "d", "-q", "-n", trees}).status, 0);
  return folder.files("d.ST");
}

Outcome check(const Files& files, std::vector<std::string> options = {}) {
  const TemporaryFolder folder;
  for (const auto& [name, bytes] : files) folder.write("d.ST/" + name, bytes);
  options.insert(options.begin(), {"check", folder.path(""), "d"});
  return runKit(options);
}

// Inputs longer than the strings' words and the records' prefixes.
Files longOnes() {
  return allMadeOf(">x\nGATTACAGATTACACATTACAGATTACAGGATTACAACCA\n>y\nGATTA\n",
                   ">z\nCATTACAGATTACANGATTA\n", 30);
}

TEST(Check, PassesWhatIsRight) {
  const Files files = longOnes();
  const Outcome run = check(files, {"-j", "2"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(run.out,
            "all right: 4 inputs, 2 suffix arrays, the merged array with its "
            "LCPs, the suffix tree partitions\n");
  EXPECT_THAT(check(files, {"--json"}).out, HasSubstr("{\"faults\":0,"));
}

// Every byte of every file that the merge reads or writes matters, but for the
// flag bits, which the trees and arrays only carry.
TEST(Check, FindsEveryChangedByte) {
  const std::vector<std::pair<std::string, size_t>> steps = {
      {"d.stlengths", 3}, {"d.stblengths", 3}, {"d.stplengths", 1},
      {"d_0.stbin", 3},   {"d_1.stpsa", 21},   {"d_0.stlcp", 21},
      {"d.stpsa", 81},    {"d.stlcp", 27},     {"d.stdiv", 11},
      {"d_0.stree", 13},  {"d_2.stree", 13}};
  Files files = longOnes();
  for (const auto& [name, step] : steps) {
    std::string& bytes = files.at(name);
    // The first LCP entry means nothing.
    for (size_t at = name.ends_with(".stlcp") ? 4 : 0; at < bytes.size();
         at += step) {
      SCOPED_TRACE(name + " byte " + std::to_string(at));
      bytes[at] = static_cast<char>(bytes[at] ^ 4);
      const Outcome run = check(files);
      bytes[at] = static_cast<char>(bytes[at] ^ 4);
      ASSERT_EQ(run.status, 1);
      ASSERT_THAT(run.out + run.err, HasSubstr("d.ST/d"));
    }
  }
}

using Change = std::function<void(Files&)>;

// Words are counted from 0, in the file or in its records.
Change set(const std::string& file, size_t word, uint32_t value) {
  return [=](Files& files) {
    std::string& bytes = files[file];
    if (bytes.size() < 4 * word + 4) bytes.resize(4 * word + 4);
    std::memcpy(&bytes[4 * word], &value, 4);
  };
}

Change cut(const std::string& file, size_t less) {
  return [=](Files& files) {
    std::string& bytes = files.at(file);
    bytes.resize(bytes.size() - less);
  };
}

Change lose(const std::string& file) {
  return [=](Files& files) { files.erase(file); };
}

// Exchange a record of so many bytes with the next one; put it over that one.
Change exchange(const std::string& file, size_t size, size_t record) {
  return [=](Files& files) {
    char* first = &files.at(file).at(size * record);
    std::swap_ranges(first, first + size, first + size);
  };
}
Change repeat(const std::string& file, size_t size, size_t record) {
  return [=](Files& files) {
    char* first = &files.at(file).at(size * record);
    std::memcpy(first + size, first, size);
  };
}

constexpr size_t kSuffix = 16;

Change suffix(const std::string& file, size_t record, size_t word,
              uint32_t value) {
  return set(file, 4 * record + word, value);
}

Change node(const std::string& file, size_t record, size_t word,
            uint32_t value) {
  return set(file, 3 * record + word, value);
}

struct Damage {
  std::string name;
  std::vector<Change> changes;
  std::string fault;  // all that is said, after the folder
};

// The arrays are those of GATTC: ATTC C GATTC TC TTC, of GA: A GA, and of both:
// A ATTC C GA GATTC TC TTC. The trees' records, edges in bits:
//
//   d_0.stree   0 ─┬─ 4 (1) ─┬─ 1 (1) and 2: A ─── 3 (6): ATTC
//                  │         └─ 5 (1): C
//                  └─ 6 (4) and 7: GA ─── 8 (6): GATTC
//   d_1.stree   0 ─── 2 (2) ─┬─ 1 (2): TC
//                            └─ 3 (4): TTC
const std::vector<Damage> kDamages = {
    // Lengths
    {"another length",
     {set("d.stlengths", 1, 3)},
     "d.stblengths: record 1: 4 bits, expected 6, two for each character"},
    {"another length in bits",
     {set("d.stblengths", 0, 8)},
     "d.stblengths: record 0: 8 bits, expected 10, two for each character"},
    {"a length in bits missing",
     {cut("d.stblengths", 4)},
     "d.stblengths: 1 entries, expected 2, as many as in the lengths file"},
    {"a length past the limit",
     {set("d.stlengths", 1, 0x40000000), set("d.stblengths", 1, 0x80000000)},
     "d.stlengths: record 1: 1073741824 characters, expected at most "
     "1073741823"},
    {"partitions of more inputs",
     {set("d.stplengths", 0, 1), set("d.stplengths", 1, 2)},
     "d.stplengths: the partitions do not cover the 2 inputs just once"},
    {"a partition that its array does not fill",
     {set("d.stplengths", 0, 2)},
     "d_0.stpsa: suffix 0 of input 1 is missing"},
    // Strings
    {"no string", {lose("d_1.stbin")}, "d_1.stbin: No such file or directory"},
    {"a string cut short",
     {cut("d_1.stbin", 8)},
     "d_1.stbin: 0 bytes are too few for a string of 2 characters"},
    {"no trailer", {cut("d_1.stbin", 4)}, "d_1.stbin: 1 words, expected 2"},
    {"another trailer",
     {set("d_0.stbin", 1, 1)},
     "d_0.stbin: record 1: the trailer word is not zero"},
    {"padding that is not zero",
     {set("d_0.stbin", 0, 0x8F400001)},
     "d_0.stbin: record 0: bits after the last character are not zero"},
    {"another character",
     {set("d_1.stbin", 0, 0x90000000)},  // GC
     "d_1.stpsa: record 0: prefix words 00000000 00000000, expected 40000000 "
     "00000000"},
    // Suffix arrays and their LCPs
    {"no array", {lose("d_1.stpsa")}, "d_1.stpsa: No such file or directory"},
    {"half a suffix",
     {cut("d_1.stpsa", 1)},
     "d_1.stpsa: 31 bytes are not a whole number of records of 16 bytes"},
    {"suffixes in another order",
     {exchange("d_0.stpsa", kSuffix, 3)},
     "d_0.stpsa: record 4: suffix 3 of input 0 sorts before suffix 2 of input "
     "0, which stands before it"},
    {"a suffix twice",
     {repeat("d_0.stpsa", kSuffix, 3)},
     "d_0.stpsa: record 4: suffix 3 of input 0 is there a second time"},
    {"a suffix missing",
     {cut("d_0.stpsa", kSuffix), cut("d_0.stlcp", 4)},
     "d_0.stpsa: suffix 2 of input 0 is missing"},
    {"a suffix of another array",
     {suffix("d_0.stpsa", 1, 0, 1 << 2)},
     "d_0.stpsa: record 1: input 1 is not one of this array's"},
    {"a position past the end",
     {suffix("d_0.stpsa", 1, 1, 5)},
     "d_0.stpsa: record 1: there is no suffix 5 of input 0"},
    {"another first prefix word",
     {suffix("d_0.stpsa", 2, 2, 0x8F500000)},
     "d_0.stpsa: record 2: prefix words 8F500000 00000000, expected 8F400000 "
     "00000000"},
    {"another second prefix word",
     {suffix("d_0.stpsa", 2, 3, 1)},
     "d_0.stpsa: record 2: prefix words 8F400000 00000001, expected 8F400000 "
     "00000000"},
    {"a longer common prefix",
     {set("d_0.stlcp", 4, 3 << 1 | 1)},
     "d_0.stlcp: record 4: entry 7, expected 5"},
    {"another firstbit",
     {set("d_0.stlcp", 3, 1 << 1)},
     "d_0.stlcp: record 3: entry 2, expected 3"},
    {"an entry missing",
     {cut("d_0.stlcp", 4)},
     "d_0.stlcp: 4 entries, expected 5, as many as records"},
    // The merged array
    {"merged: a suffix of no input",
     {suffix("d.stpsa", 6, 0, 2 << 2)},
     "d.stpsa: record 6: input 2 is not one of this array's"},
    {"merged: a position past the end",
     {suffix("d.stpsa", 3, 1, 2)},
     "d.stpsa: record 3: there is no suffix 2 of input 1"},
    {"merged: in another order",
     {exchange("d.stpsa", kSuffix, 3)},
     "d.stpsa: record 4: suffix 0 of input 1 sorts before suffix 0 of input 0, "
     "which stands before it"},
    {"merged: a suffix in another's place",
     {repeat("d.stpsa", kSuffix, 5)},
     "d.stpsa: record 6: suffix 3 of input 0 is there a second time"},
    {"merged: another prefix word",
     {suffix("d.stpsa", 4, 2, 0x8F400001)},
     "d.stpsa: record 4: prefix words 8F400001 00000000, expected 8F400000 "
     "00000000"},
    {"merged: the last suffix missing",
     {cut("d.stpsa", kSuffix), cut("d.stlcp", 4)},
     "d.stpsa: suffix 2 of input 0 is missing"},
    {"merged: no common prefix",
     {set("d.stlcp", 4, 0)},
     "d.stlcp: record 4: entry 0, expected 8"},
    {"merged: the last entry missing",
     {cut("d.stlcp", 4)},
     "d.stlcp: 6 entries, expected 7, as many as records"},
    // Trees
    {"a child that is not there",
     {node("d_0.stree", 0, 2, 9 << 2)},
     "d_0.stree: record 0: there is no record 9"},
    {"a cycle",
     {node("d_0.stree", 1, 1, 4 << 2 | 2)},
     "d_0.stree: record 4: reached a second time"},
    {"a subtree of two parents",
     {node("d_0.stree", 4, 2, 3 << 2)},
     "d_0.stree: record 3: reached a second time"},
    {"a record of no parent",
     {set("d_1.stree", 14, 0), set("d.stdiv", 9, 5)},
     "d_1.stree: record 4: not reached from the root"},
    {"one child alone",
     {node("d_1.stree", 2, 2, 0)},
     "d_1.stree: record 2: neither two children, nor a group and a left child"},
    {"a group without an end",
     {node("d_1.stree", 3, 1, 3)},
     "d_1.stree: record 3: a group runs past the last record"},
    {"a group of two edges",
     {node("d_0.stree", 2, 0, 2)},
     "d_0.stree: record 2: not a leaf with its group's edge of 1 bits"},
    {"an edge to no suffix",
     {node("d_0.stree", 3, 0, 5)},
     "d_0.stree: record 3: input 0 has no suffix of 7 bits"},
    {"an edge to another suffix",
     {node("d_0.stree", 3, 0, 8)},
     "d_0.stree: record 3: branches off after 2 bits, expected 0"},
    {"an edge of no bits",
     {node("d_0.stree", 5, 0, 0)},
     "d_0.stree: record 5: an edge of no bits"},
    {"a branch too low",
     {node("d_1.stree", 2, 0, 3), node("d_1.stree", 1, 0, 1),
      node("d_1.stree", 3, 0, 3)},
     "d_1.stree: record 3: branches off after 3 bits, expected 2"},
    {"children exchanged",
     {node("d_1.stree", 2, 1, 3 << 2), node("d_1.stree", 2, 2, 1 << 2)},
     "d_1.stree: record 1: suffix 3 of input 0 sorts before suffix 2 of input "
     "0, which stands before it"},
    {"a root's child on the other side",
     {node("d_1.stree", 0, 1, 2 << 2), node("d_1.stree", 0, 2, 0)},
     "d_1.stree: record 0: its only child is on the wrong side"},
    {"a leaf of no input",
     {node("d_0.stree", 5, 1, 2 << 2 | 1)},
     "d_0.stree: record 5: input 2 has no suffix of 2 bits"},
    {"a leaf with a child",
     {node("d_0.stree", 5, 2, 1 << 2)},
     "d_0.stree: record 5: a leaf with a child"},
    {"a root with an edge",
     {node("d_1.stree", 0, 0, 2)},
     "d_1.stree: record 0: a root has no edge and no group, and is no leaf"},
    {"no tree", {lose("d_1.stree")}, "d_1.stree: No such file or directory"},
    {"a tree cut short",
     {cut("d_0.stree", 12)},
     "d_0.stree: 8 records, expected 9 by its divider"},
    {"a tree of a record more",
     {set("d_1.stree", 14, 0)},
     "d_1.stree: 5 records, expected 4 by its divider"},
    // Dividers: six words each
    {"another tree's number",
     {set("d.stdiv", 8, 2)},
     "d.stdiv: record 1: tree 2, expected 1"},
    {"another number of nodes",
     {set("d.stdiv", 9, 5)},
     "d_1.stree: 4 records, expected 5 by its divider"},
    {"another greatest depth",
     {set("d.stdiv", 10, 3)},
     "d_1.stree: node depth 2, its divider says 3"},
    {"another last prefix",
     {set("d.stdiv", 0, 0x8F500000)},
     "d_0.stree: last prefix 8F400000, its divider says 8F500000"},
    {"another first prefix",
     {set("d.stdiv", 1, 1)},
     "d_0.stree: first prefix 00000000, its divider says 00000001"},
    {"reserved bytes in use",
     {set("d.stdiv", 11, 1)},
     "d.stdiv: record 1: reserved bytes that are not zero"},
    {"the last divider missing",
     {cut("d.stdiv", 24)},
     "d.stdiv: suffix 2 of input 0 is in no tree"},
    {"neither array nor trees",
     {lose("d.stpsa"), lose("d.stdiv")},
     "d: neither a merged array (.stpsa) nor trees (.stdiv)"},
};

TEST(Check, NamesEveryDamage) {
  const Files right = allMadeOf(">x\nGATTC\n", ">y\nGA\n", 9);
  ASSERT_EQ(check(right).status, 0);
  for (const Damage& damage : kDamages) {
    SCOPED_TRACE(damage.name);
    Files files = right;
    for (const Change& change : damage.changes) change(files);
    const Outcome run = check(files);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out + run.err, HasSubstr("/d.ST/" + damage.fault + "\n"));
  }
}

TEST(Check, GoesOnAndCounts) {
  Files files = longOnes();
  const size_t last = files["d.stpsa"].size() / kSuffix - 1;
  exchange("d.stpsa", kSuffix, last - 1)(files);
  set("d_1.stbin", 1, 1)(files);
  const Outcome all = check(files, {"--all", "--json"});
  EXPECT_EQ(all.status, 1);
  EXPECT_THAT(all.out, HasSubstr("d_1.stbin\",\"record\":1,\"fault\":"));
  EXPECT_THAT(all.out, HasSubstr("d.stpsa\",\"record\":" +
                                 std::to_string(last) + ",\"fault\":"));
  const size_t faults = linesOf(all.out).size() - 1;
  EXPECT_GE(faults, 2U);
  EXPECT_THAT(all.out,
              HasSubstr("{\"faults\":" + std::to_string(faults) + ","));
  EXPECT_THAT(check(files).err, HasSubstr("stopped at the first fault"));
}

}  // namespace
