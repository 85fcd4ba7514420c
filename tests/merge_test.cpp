// The whole program against a plain sort of all suffixes; for random
// collections and options, tests/model does that. Whatever the
// ordering of the streams, the road of the comparison, the sizes of buffers
// and the way files are read: the same bytes.

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/plain_merge.h"
#include "support/program.h"

namespace {

using Options = std::vector<std::string>;

std::string joined(const Options& options) {
  std::string text;
  for (const std::string& option : options) text += option + " ";
  return text;
}

// Merges with the list, or with -H, and expects the arrays of a plain merge.
void expectMerge(const DataFolder& folder, const PlainArray& want,
                 const Options& options, bool heap) {
  SCOPED_TRACE("options " + joined(options));
  Options all = {folder.root(), "x", "-a", "-l"};
  all.insert(all.end(), options.begin(), options.end());
  if (heap) all.push_back("-H");
  const Outcome outcome = runPalvor(all);
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(folder.records("x.stpsa"), want.records);
  EXPECT_EQ(
      folder.words("x.stlcp"),
      heap ? std::vector<uint32_t>(want.entries.size(), 0) : want.entries);
}

void expectBothMerges(const Collection& collection, const Options& options) {
  SCOPED_TRACE(described(collection));
  const DataFolder folder(collection);
  Options all = options;
  if (collection.zeroOrigin) all.push_back("-z");
  ASSERT_NO_FATAL_FAILURE(expectMerge(
      folder, plainMerge(collection, Ties::kByArrival), all, false));
  ASSERT_NO_FATAL_FAILURE(
      expectMerge(folder, plainMerge(collection, Ties::kByInput), all, true));
}

std::string randomText(unsigned seed, size_t length,
                       const std::string& alphabet) {
  std::mt19937 random(seed);
  std::string text;
  while (text.size() < length) text += alphabet[random() % alphabet.size()];
  return text;
}

// Every pair of texts of up to two characters, in one run for each.
TEST(Merge, OfEverySmallPairEqualsThePlainSort) {
  const std::vector<std::string> texts = [] {
    std::vector<std::string> all = {""};
    for (const char a : std::string("ACT")) {
      all.push_back({a});
      for (const char b : std::string("ACT")) all.push_back({a, b});
    }
    return all;
  }();
  for (const std::string& a : texts) {
    for (const std::string& b : texts) {
      ASSERT_NO_FATAL_FAILURE(expectBothMerges({{a, b}}, {"-M", "16"}));
    }
  }
}

TEST(Merge, OfEveryLengthEqualsThePlainSort) {
  const std::string text = randomText(1, 65, "ACGT");
  Collection heads, tails;
  for (size_t length = 1; length <= 65; length++) {
    heads.texts.push_back(text.substr(0, length));
    tails.texts.push_back(text.substr(65 - length));
  }
  for (const Collection& collection : {heads, tails}) {
    ASSERT_NO_FATAL_FAILURE(expectBothMerges(collection, {"-M", "48"}));
    ASSERT_NO_FATAL_FAILURE(expectBothMerges(collection, {"-X", "-U", "-Z"}));
  }
}

// LCP entries are computed for a window of records ahead, which a block may
// cut anywhere.
TEST(Merge, BringsTrueEntriesForAnySizeOfBlock) {
  const std::string base = randomText(7, 3000, "ACGT") + std::string(300, 'C');
  Collection collection{{base, base, randomText(8, 2000, "AC")}};
  for (size_t i = 50; i < base.size(); i += 400) {
    collection.texts[1][i] = collection.texts[1][i] == 'A' ? 'G' : 'A';
  }
  const DataFolder folder(collection);
  const PlainArray list = plainMerge(collection, Ties::kByArrival);
  for (const int records :
       {1,   2,   3,   31,  32,  33,  63,   64,   65,   66,
        127, 128, 129, 255, 256, 257, 1000, 3299, 3300, 3301}) {
    const std::string bytes = std::to_string(16 * records);
    ASSERT_NO_FATAL_FAILURE(expectMerge(folder, list, {"-M", bytes}, false));
  }
  ASSERT_NO_FATAL_FAILURE(expectMerge(folder, list, {"-X"}, false));
  ASSERT_NO_FATAL_FAILURE(expectMerge(
      folder, plainMerge(collection, Ties::kByInput), {"-M", "1040"}, true));
}

TEST(Merge, ReadsAndWritesWhereItIsTold) {
  const Collection collection{{"GATTACA", "TACA", "CAT"}, {1, 2}};
  const DataFolder inputs(collection), arrays(collection), outputs(collection);
  for (const char* name : {"x_0.stpsa", "x_1.stpsa", "x.stplengths"}) {
    inputs.remove(name);  // taken from elsewhere
  }
  // The arrays' folder has a name of its own, its partitions file has not.
  rename((arrays.root() + "x.ST").c_str(), (arrays.root() + "y.ST").c_str());
  for (const char* stream : {"0", "1"}) {
    const std::string folder = arrays.root() + "y.ST/";
    rename((folder + "x_" + stream + ".stpsa").c_str(),
           (folder + "y_" + stream + ".stpsa").c_str());
  }
  const Outcome outcome =
      runPalvor({inputs.root(), "x", "-a", "-l", "-S", arrays.root(), "-s", "y",
                 "-o", outputs.root(), "-p", "z"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const PlainArray want = plainMerge(collection, Ties::kByArrival);
  EXPECT_EQ(outputs.records("../z.ST/z.stpsa"), want.records);
  EXPECT_EQ(outputs.words("../z.ST/z.stlcp"), want.entries);
  EXPECT_EQ(outputs.bytes("../z.ST/z.stdiv"), "");
  EXPECT_FALSE(inputs.holds("x.stdiv"));
}

TEST(Merge, WritesNoLcpArrayUnasked) {
  const DataFolder folder{Collection{{"GATTACA", "TACA"}}};
  EXPECT_EQ(runPalvor({folder.root(), "x", "-a"}).status, 0);
  EXPECT_TRUE(folder.holds("x.stpsa"));
  EXPECT_FALSE(folder.holds("x.stlcp"));
}

TEST(Merge, IgnoresWhatFollowsInAFile) {
  const Collection collection{{"GATTACA", "TACA"}};
  const DataFolder folder(collection);
  for (const char* name :
       {"x.stlengths", "x_0.stbin", "x_0.stpsa", "x_1.stlcp"}) {
    folder.write(name, folder.bytes(name) + "odd");
  }
  folder.writeWords("x.stblengths", {14, 8, 99});
  folder.write("x.stplengths", "odd");  // too short to be a partitions file
  const PlainArray want = plainMerge(collection, Ties::kByArrival);
  for (const Options& options : {Options{}, {"-U", "-f"}, {"-Z", "-M", "32"}}) {
    ASSERT_NO_FATAL_FAILURE(expectMerge(folder, want, options, false));
  }
}

TEST(Merge, AcceptsAnyTrailerWhenMapping) {
  const Collection collection{{"GATTACA", "TACA"}};
  const DataFolder folder(collection);
  std::vector<uint32_t> words = folder.words("x_0.stbin");
  words.back() = 0xFFFFFFFF;
  folder.writeWords("x_0.stbin", words);
  ASSERT_NO_FATAL_FAILURE(expectMerge(
      folder, plainMerge(collection, Ties::kByArrival), {"-U"}, false));
}

TEST(Merge, MergesThePartitionsThatThereAreWhateverTheInputs) {
  // One input in one array, two arrays of none, an input in no array.
  const Collection collection{{"GATTACA"}, {1, 0, 0}};
  ASSERT_NO_FATAL_FAILURE(expectBothMerges(collection, {"-Z"}));
  const Collection fewer{{"GATTACA", "CAT"}, {1}};
  ASSERT_NO_FATAL_FAILURE(expectBothMerges(fewer, {}));
}

}  // namespace
