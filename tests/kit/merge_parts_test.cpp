// palvor-kit plan, merge --range and join, through the real programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/relatives.h"

namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

Outcome kit(const std::string& command, const DataFolder& folder,
            const std::string& options = "", const Setting& setting = {}) {
  std::vector<std::string> arguments = wordsOf(options);
  arguments.insert(arguments.begin(), {command, folder.root(), "x"});
  return runKit(arguments, setting);
}

void expectDone(const std::string& command, const DataFolder& folder,
                const std::string& options = "") {
  const Outcome run = kit(command, folder, options);
  ASSERT_EQ(run.status, 0) << command << " " << options << ": " << run.err;
  ASSERT_EQ(run.out, "");
}

std::string refusal(const std::string& command, const DataFolder& folder,
                    const std::string& options = "") {
  const Outcome run = kit(command, folder, options);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, StartsWith("palvor-kit: error: "));
  return run.err;
}

const std::vector<std::string> kArrayFiles = {"x.stpsa", "x.stlcp", "x.stdiv"};

// What one merge writes; the files are removed.
std::map<std::string, std::string> mergedAtOnce(const DataFolder& folder) {
  folder.expectMerge("-a -l");
  std::map<std::string, std::string> files;
  for (const std::string& name : kArrayFiles) {
    files[name] = folder.bytes(name);
    fs::remove(folder.path(name));
  }
  return files;
}

void expectFiles(const DataFolder& folder,
                 const std::map<std::string, std::string>& expected) {
  for (const auto& [name, bytes] : expected) {
    ASSERT_TRUE(folder.holds(name)) << name;
    ASSERT_EQ(folder.bytes(name), bytes) << name;
  }
}

size_t rangesOf(const DataFolder& folder) {
  return linesOf(folder.bytes("x.ranges.tsv")).size() - 2;
}

// Files of parts, whole or not.
std::vector<std::string> partsIn(const DataFolder& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.path(""))) {
    const std::string name = entry.path().filename().string();
    if (name.find(".range") != std::string::npos) names.push_back(name);
  }
  return names;
}

TEST(Parts, BecomeWhatOneMergeWrites) {
  for (uint32_t seed = 400; seed < 404; seed++) {
    SCOPED_TRACE(seed);
    Collection collection = relatives(seed, 6, seed % 2 ? "AC" : "ACGT");
    if (seed % 2) collection.parts = {3, 0, 3};
    const DataFolder folder(collection);
    const auto expected = mergedAtOnce(folder);
    ASSERT_NO_FATAL_FAILURE(expectDone("plan", folder, "--ranges 5"));
    const size_t ranges = rangesOf(folder);
    ASSERT_GT(ranges, 2U);
    const std::string stage = " --stage " + folder.root() + "stage";
    for (size_t r = ranges; r-- > 0;) {
      ASSERT_NO_FATAL_FAILURE(expectDone("merge", folder,
                                         "--range " + std::to_string(r) +
                                             (r % 2 ? stage : "") +
                                             (r % 3 ? " -Z" : "")));
    }
    EXPECT_TRUE(fs::is_empty(folder.root() + "stage"));
    ASSERT_NO_FATAL_FAILURE(expectDone("join", folder, "--keep"));
    ASSERT_NO_FATAL_FAILURE(expectFiles(folder, expected));
    EXPECT_EQ(partsIn(folder).size(), 2 * ranges + 1);
    ASSERT_NO_FATAL_FAILURE(expectDone("join", folder, "-j 3"));
    ASSERT_NO_FATAL_FAILURE(expectFiles(folder, expected));
    EXPECT_THAT(partsIn(folder), IsEmpty());
    EXPECT_EQ(runKit({"check", folder.root(), "x"}).status, 0);
  }
}

// Whatever is wrong with a part, its proof or that of its neighbour tells.
TEST(Parts, AreProvedOneByOne) {
  const DataFolder folder(relatives(4, 4, "ACGT"));
  expectDone("plan", folder, "--ranges 3");
  EXPECT_EQ(kit("check", folder, "--range 0").status, 1);
  for (const char* range : {"0", "1", "2"}) {
    expectDone("merge", folder, std::string("--range ") + range);
  }
  const auto proof = [&](int range) {
    return kit("check", folder, "--range " + std::to_string(range));
  };
  for (const int range : {0, 1, 2}) {
    EXPECT_EQ(proof(range).status, 0) << proof(range).out;
  }
  EXPECT_THAT(proof(1).out,
              AllOf(StartsWith("all right: 4 inputs, range 1 of 3, "),
                    HasSubstr(" suffixes\n")));
  EXPECT_THAT(proof(3).err, HasSubstr("there is no range 3, only 0 to 2"));

  const std::string part = folder.bytes("x_1.range.stpsa");
  const std::string entries = folder.bytes("x_1.range.stlcp");
  std::string wrong = entries;
  wrong[0] = static_cast<char>(wrong[0] ^ 2);  // the seam
  folder.write("x_1.range.stlcp", wrong);
  EXPECT_THAT(proof(1).out, HasSubstr("x_1.range.stlcp: record 0: entry "));
  for (const std::string& less : {entries.substr(4), std::string()}) {
    folder.write("x_1.range.stlcp", less);
    EXPECT_THAT(proof(1).out, HasSubstr("records, planned are "));
    const Outcome going = kit("check", folder, "--range 1 --all");
    EXPECT_EQ(going.status, 1);
    EXPECT_THAT(going.out, HasSubstr("x_1.range.stlcp: "));
  }
  folder.write("x_1.range.stlcp", entries);
  folder.write("x_1.range.stpsa", part.substr(16) + part.substr(0, 16));
  EXPECT_THAT(proof(1).out, HasSubstr("x_1.range.st"));
  EXPECT_EQ(proof(1).status, 1);
  fs::remove(folder.path("x_1.range.stpsa"));
  EXPECT_THAT(proof(2).out, HasSubstr("x_1.range.stpsa: No such file"));
}

TEST(Plans, AreTables) {
  const DataFolder folder({{std::string(20, 'C') + "A", "TTGCA"}});
  const Outcome run = kit("plan", folder, "--ranges 2");
  EXPECT_THAT(run.err, HasSubstr("26 suffixes in 2 ranges, planned, in "));
  const auto lines = linesOf(folder.bytes("x.ranges.tsv"));
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[0], StartsWith("#collection\t"));
  EXPECT_EQ(lines[1], "#range\tlow\thigh\tsuffixes\tbytes");
  const auto first = wordsOf(lines[2]);
  EXPECT_EQ(first[1], "0000000000000000");
  EXPECT_EQ(first[2], wordsOf(lines[3])[1]);
  EXPECT_EQ(wordsOf(lines[3])[2], "-");
  EXPECT_EQ(std::stoi(first[3]) + std::stoi(wordsOf(lines[3])[3]), 26);
  EXPECT_EQ(std::stoi(first[4]), 20 * std::stoi(first[3]));
}

TEST(Plans, StayUnlessTheyAreReplaced) {
  const DataFolder folder(relatives(1, 4, "ACGT"));
  expectDone("plan", folder, "--ranges 3");
  expectDone("merge", folder, "--range 1");
  const std::string plan = folder.bytes("x.ranges.tsv");
  EXPECT_THAT(kit("plan", folder, "--ranges 3").err,
              HasSubstr("as planned before"));
  EXPECT_TRUE(folder.holds("x_1.range.stpsa"));
  EXPECT_THAT(refusal("plan", folder, "--ranges 4"),
              HasSubstr("x.ranges.tsv: another plan is there; --force"));
  EXPECT_EQ(folder.bytes("x.ranges.tsv"), plan);
  expectDone("plan", folder, "--ranges 4 --force");
  EXPECT_EQ(partsIn(folder), std::vector<std::string>{"x.ranges.tsv"});
}

TEST(Plans, AreRefusedIfTheyAreNone) {
  const DataFolder folder(relatives(2, 3, "ACGT"));
  EXPECT_THAT(refusal("merge", folder, "--range 0"),
              HasSubstr("x.ranges.tsv: there is no plan; palvor-kit plan"));
  expectDone("plan", folder, "--ranges 3");
  EXPECT_THAT(refusal("merge", folder, "--range 3"),
              HasSubstr("there is no range 3, only 0 to 2"));
  const std::string plan = folder.bytes("x.ranges.tsv");
  const auto lines = linesOf(plan);
  const std::vector<std::pair<std::string, std::string>> damaged = {
      {"", "line 1 "},
      {"#collection\tx\n", "line 2 "},
      {lines[0] + "\n" + lines[1] + "\n", "line 3 "},
      {plan.substr(0, plan.size() - 1), "line 5 "},
      {lines[0] + "\n" + lines[1] + "\n" + lines[3] + "\n", "line 3 "},
      {plan + lines[4] + "\n", "line 6 "},
      {plan.substr(0, plan.size() - lines[4].size() - 1), "line 5 "},
  };
  for (const auto& [text, line] : damaged) {
    folder.write("x.ranges.tsv", text);
    for (const char* command : {"merge --range 0", "join"}) {
      const auto words = wordsOf(command);
      EXPECT_THAT(
          refusal(words[0], folder, words.size() > 1 ? "--range 0" : ""),
          HasSubstr("x.ranges.tsv: " + line))
          << text;
    }
  }
  // Other counts than the arrays have.
  std::string wrong = plan;
  const auto fields = wordsOf(lines[2]);
  const int count = std::stoi(fields[3]) + 1;
  wrong.replace(wrong.find(lines[2]), lines[2].size(),
                "0\t" + fields[1] + "\t" + fields[2] + "\t" +
                    std::to_string(count) + "\t" + std::to_string(20 * count));
  folder.write("x.ranges.tsv", wrong);
  EXPECT_THAT(refusal("merge", folder, "--range 0"),
              HasSubstr("planned are " + std::to_string(count)));
}

// As if the folder had been prepared anew, with strings of the same lengths.
TEST(Plans, AreRefusedForOtherArrays) {
  const DataFolder folder({{"GATTACATTA", "CATTACA"}});
  const DataFolder other({{"GATTACATTA", "CATTAGA"}});
  expectDone("plan", folder, "--ranges 2");
  expectDone("merge", folder, "--range 0");
  expectDone("merge", folder, "--range 1");
  fs::copy_file(other.path("x_1.stpsa"), folder.path("x_1.stpsa"),
                fs::copy_options::overwrite_existing);
  for (const char* command : {"merge", "join"}) {
    EXPECT_THAT(
        refusal(command, folder, *command == 'm' ? "--range 0" : ""),
        HasSubstr("x.ranges.tsv: planned for other suffix arrays than are "));
  }
  EXPECT_FALSE(folder.holds("x.stpsa"));
}

TEST(Parts, ThatAreMissingOrCutAreNamed) {
  const DataFolder folder(relatives(3, 4, "ACGT"));
  const auto expected = mergedAtOnce(folder);
  expectDone("plan", folder, "--ranges 4");
  EXPECT_THAT(refusal("join", folder),
              HasSubstr("4 of 4 parts are missing: of range 0, 1, 2 and 3"));
  for (const char* range : {"0", "1", "3"}) {
    expectDone("merge", folder, std::string("--range ") + range);
  }
  EXPECT_THAT(refusal("join", folder),
              HasSubstr("1 of 4 parts are missing: of range 2\n"));
  expectDone("merge", folder, "--range 2");
  fs::resize_file(folder.path("x_1.range.stlcp"),
                  fs::file_size(folder.path("x_1.range.stlcp")) - 4);
  EXPECT_THAT(refusal("join", folder),
              AllOf(HasSubstr("x_1.range.stpsa: not whole"),
                    HasSubstr("palvor-kit merge --range 1 makes it again")));
  EXPECT_FALSE(folder.holds("x.stpsa"));
  expectDone("merge", folder, "--range 1");
  EXPECT_THAT(kit("merge", folder, "--range 1").err,
              HasSubstr("the part of range 1 is there"));
  ASSERT_NO_FATAL_FAILURE(expectDone("join", folder));
  ASSERT_NO_FATAL_FAILURE(expectFiles(folder, expected));
}

// A worker that has no room, or is killed, leaves no part; what it left behind
// is in nobody's way, and goes with the others.
TEST(Parts, AreWholeOrAbsent) {
  const DataFolder folder(relatives(4, 4, "ACGT"));
  const auto expected = mergedAtOnce(folder);
  expectDone("plan", folder, "--ranges 3");
  const Outcome full = kit("merge", folder, "--range 0", {.fileSize = 500});
  EXPECT_EQ(full.status, 1);
  EXPECT_THAT(full.err, HasSubstr("x_0.range.st"));
  EXPECT_EQ(partsIn(folder), std::vector<std::string>{"x.ranges.tsv"});
  folder.write("x_0.range.stpsa.node1-77.part", "what was written");
  for (const char* range : {"0", "1", "2"}) {
    expectDone("merge", folder, std::string("--range ") + range);
  }
  expectDone("join", folder);
  ASSERT_NO_FATAL_FAILURE(expectFiles(folder, expected));
  EXPECT_THAT(partsIn(folder), IsEmpty());
}

// Killed at any moment, by a real signal: the part is whole or absent, and the
// next worker completes it.
TEST(Parts, SurviveTheDeathOfTheirWorkers) {
  const DataFolder folder(relatives(6, 6, "ACGT"));
  const auto expected = mergedAtOnce(folder);
  expectDone("plan", folder, "--ranges 2");
  expectDone("merge", folder, "--range 0");
  int killed = 0;
  for (int delay = 1; delay <= 24; delay++) {  // milliseconds
    fs::remove(folder.path("x_1.range.stpsa"));
    const Outcome run =
        kit("merge", folder, "--range 1",
            {.under = {"timeout", "-s", "KILL", std::to_string(delay * 1e-3)}});
    killed += run.status == 128 + SIGKILL;
    if (run.status == 0) {
      ASSERT_TRUE(folder.holds("x_1.range.stpsa"));
    } else if (!folder.holds("x_1.range.stpsa")) {
      ASSERT_THAT(refusal("join", folder), HasSubstr("of range 1\n"));
    }
    expectDone("merge", folder, "--range 1");
    ASSERT_EQ(kit("check", folder, "--range 1").status, 0) << delay;
  }
  EXPECT_GT(killed, 0);
  expectDone("join", folder);
  ASSERT_NO_FATAL_FAILURE(expectFiles(folder, expected));
  EXPECT_THAT(partsIn(folder), IsEmpty());
}

// The plan and the parts are elsewhere, so that preparing anew leaves them.
TEST(Plans, AreStaleWhenTheFolderIsPreparedAnew) {
  const DataFolder folder({{"GATTACATTA", "CATTACA"}});
  const auto prepare = [&](const std::string& last) {
    folder.write("a.fa", ">a\nGATTACATTA\n>b\nCATTAC" + last + "\n");
    const Outcome run = runKit({"prepare", "-o", folder.root(), "-p", "x",
                                "--force", folder.path("a.fa")});
    ASSERT_EQ(run.status, 0) << run.err;
  };
  const std::string elsewhere = " -o " + folder.root() + "out/";
  ASSERT_NO_FATAL_FAILURE(prepare("A"));
  expectDone("plan", folder, "--ranges 2" + elsewhere);
  for (const char* range : {"--range 0", "--range 1"}) {
    expectDone("merge", folder, range + elsewhere);
  }
  ASSERT_NO_FATAL_FAILURE(prepare("T"));
  for (const std::string command : {"merge", "join"}) {
    EXPECT_THAT(refusal(command, folder,
                        (command == "merge" ? "--range 0" : "") + elsewhere),
                HasSubstr("planned for other suffix arrays than are there"));
  }
  int wrong = 0;
  for (const char* range : {"--range 0", "--range 1"}) {
    wrong += kit("check", folder, range + elsewhere).status == 1;
  }
  EXPECT_GT(wrong, 0);
  expectDone("plan", folder, "--ranges 2 --force" + elsewhere);
  EXPECT_THAT(refusal("join", folder, elsewhere.substr(1)),
              HasSubstr("2 of 2 parts are missing"));
}

TEST(Parts, GoWithTheFolderThatIsPreparedAnew) {
  const DataFolder folder(relatives(5, 3, "ACGT"));
  expectDone("plan", folder, "--ranges 2");
  expectDone("merge", folder, "--range 1");
  folder.write("x_0.range.stlcp.node1-77.part", "");
  folder.write("a.fa", ">a\nGATTACA\n");
  const Outcome run = runKit({"prepare", "-o", folder.root(), "-p", "x",
                              "--force", folder.path("a.fa")});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(partsIn(folder), IsEmpty());
}

}  // namespace
