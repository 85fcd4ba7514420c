// palvor-kit merge through the real programs, against one merge by palvor.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
using testing::MatchesRegex;

Outcome merge(const DataFolder& folder, const std::string& options,
              const Setting& setting = {}) {
  std::vector<std::string> arguments = wordsOf(options);
  arguments.insert(arguments.begin(), {"merge", folder.root(), "x"});
  return runKit(arguments, setting);
}

void expectMerge(const DataFolder& folder, const std::string& options) {
  SCOPED_TRACE("options " + options);
  const Outcome run = merge(folder, options);
  ASSERT_EQ(run.status, 0) << run.err;
  ASSERT_EQ(run.out, "");
}

void expectProof(const DataFolder& folder) {
  const Outcome proof = runKit({"check", folder.root(), "x"});
  ASSERT_EQ(proof.status, 0) << proof.out;
}

const std::vector<std::string> kArrayFiles = {"x.stpsa", "x.stlcp", "x.stdiv"};

std::map<std::string, std::string> arrayOf(const DataFolder& folder) {
  std::map<std::string, std::string> files;
  for (const std::string& name : kArrayFiles) files[name] = folder.bytes(name);
  return files;
}

// Names of files that begin as merged ones do, and are none.
std::vector<std::string> unfinishedIn(const DataFolder& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.path(""))) {
    const std::string name = entry.path().filename().string();
    if (name.find(".part") != std::string::npos ||
        name.find(".range") != std::string::npos) {
      names.push_back(name);
    }
  }
  return names;
}

TEST(Merge, WritesWhatOneMergeWrites) {
  for (uint32_t seed = 300; seed < 306; seed++) {
    SCOPED_TRACE(seed);
    const int strings = seed % 4 == 0 ? 70 : static_cast<int>(2 + seed % 7);
    Collection collection = relatives(seed, strings, seed % 2 ? "AC" : "ACGT");
    if (seed % 3 == 0) collection.parts = {strings - 2, 0, 2};
    const DataFolder folder(collection);
    folder.expectMerge("-a -l");
    const auto expected = arrayOf(folder);
    for (const char* options : {"", "-j 2", "--ranges 2 -j 3",
                                "--ranges 200 -Z", "--ranges 9 -j 2"}) {
      for (const std::string& name : kArrayFiles) fs::remove(folder.path(name));
      ASSERT_NO_FATAL_FAILURE(expectMerge(folder, options));
      ASSERT_EQ(arrayOf(folder), expected) << options;
      ASSERT_THAT(unfinishedIn(folder), testing::IsEmpty());
    }
  }
}

TEST(Merge, MakesTreesThatAreNumberedThrough) {
  const DataFolder folder(relatives(5, 6, "ACGT"));
  for (const char* options : {"--trees", "--trees -n 9 --ranges 7 -j 2",
                              "--trees --ranges 40", "--trees -n 2 -j 2"}) {
    ASSERT_NO_FATAL_FAILURE(expectMerge(folder, options));
    ASSERT_NO_FATAL_FAILURE(expectProof(folder));
    ASSERT_THAT(unfinishedIn(folder), testing::IsEmpty());
    ASSERT_TRUE(folder.holds("x_0.stree"));
  }
  // The trees are not taken for those of the array's run.
  ASSERT_NO_FATAL_FAILURE(expectMerge(folder, "-j 2"));
  EXPECT_FALSE(folder.holds("x_0.stree"));
  expectProof(folder);
}

TEST(Merge, TakesWhatPalvorTakes) {
  const DataFolder folder(relatives(8, 4, "ACGT"));
  folder.expectMerge("-a -l");
  const auto expected = arrayOf(folder);
  const std::string out = folder.root() + "out";
  const Outcome run = runKit({"merge", folder.root(), "x", "-o", out, "-p", "y",
                              "-S", folder.root(), "-s", "x", "--ranges", "3"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err,
              MatchesRegex("palvor-kit: [0-9]+ suffixes in 3 ranges, "
                           "[0-9]+ MB of memory, [0-9]+ KB on disk\n"));
  for (const auto& [name, bytes] : expected) {
    fs::rename(out + "/y.ST/y" + name.substr(1), folder.path(name));
  }
  EXPECT_EQ(arrayOf(folder), expected);
}

TEST(Merge, StaysWithinItsMemoryOrSaysWhatItNeeds) {
  const DataFolder folder(relatives(9, 5, "ACGT"));
  const Outcome refused = merge(folder, "-j 2 --memory 1M");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(
      refused.err,
      MatchesRegex("palvor-kit: error: a merge in 2 threads takes [0-9]+ "
                   "MB of memory at least, 1 KB of it for the strings; "
                   "fewer threads take less\n"));
  EXPECT_THAT(merge(folder, "--memory 40M").err, HasSubstr(" of memory"));
}

// What fails in one thread ends all, and leaves neither half a result nor the
// one that was there damaged.
TEST(Merge, LeavesNothingThatLooksWhole) {
  const DataFolder folder(relatives(10, 5, "ACGT"));
  ASSERT_NO_FATAL_FAILURE(expectMerge(folder, "-j 2"));
  const auto before = arrayOf(folder);

  const Outcome full = merge(folder, "-j 2 --ranges 9", {.fileSize = 1000});
  EXPECT_EQ(full.status, 1);
  EXPECT_THAT(full.err, AllOf(HasSubstr("x.stpsa"), HasSubstr("too large")));
  const Outcome fullTrees =
      merge(folder, "--trees -j 2 --ranges 3", {.fileSize = 1000});
  EXPECT_EQ(fullTrees.status, 1);

  const std::string array = folder.bytes("x_1.stpsa");
  std::string damaged = array;
  damaged[array.size() / 2 / 16 * 16 + 7] = '\x7F';
  folder.write("x_1.stpsa", damaged);
  const Outcome wrong = merge(folder, "-j 2 --ranges 9");
  EXPECT_EQ(wrong.status, 1);
  EXPECT_THAT(wrong.err, AllOf(HasSubstr("x_1.stpsa"),
                               HasSubstr("is not inside input 1 of")));
  fs::remove(folder.path("x_1.stpsa"));
  const Outcome missing = merge(folder, "");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "palvor-kit: error: can't open Suffix file " +
                             folder.path("x_1.stpsa") +
                             ": No such file or directory\n");

  EXPECT_THAT(unfinishedIn(folder), testing::IsEmpty());
  EXPECT_EQ(arrayOf(folder), before);
  folder.write("x_1.stpsa", array);
  expectProof(folder);
}

TEST(Merge, NamesADataFolderThatIsNotThere) {
  const Outcome run = runKit({"merge", "nowhere", "x"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "palvor-kit: error: could not access lengths file "
            "nowhere/x.ST/x.stlengths: No such file or directory\n");
  EXPECT_FALSE(fs::exists("nowhere"));
}

}  // namespace
