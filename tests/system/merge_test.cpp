// Merges into an array, through the real program: palvor-kit check proves the
// array and its LCPs. For small random collections and all options, byte by
// byte, tests/model does that.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/data_folder.h"

namespace {

std::string randomText(unsigned seed, size_t length,
                       const std::string& alphabet) {
  std::mt19937 random(seed);
  std::string text;
  while (text.size() < length) text += alphabet[random() % alphabet.size()];
  return text;
}

// Records are tested 512 at a time and merged in batches, which a block may cut
// anywhere.
TEST(Merge, BringsTrueEntriesForAnySizeOfBlock) {
  const std::string base = randomText(7, 3000, "ACGT") + std::string(300, 'C');
  Collection collection{{base, base, randomText(8, 2000, "AC")}};
  for (size_t i = 50; i < base.size(); i += 400) {
    collection.texts[1][i] = collection.texts[1][i] == 'A' ? 'G' : 'A';
  }
  const DataFolder folder(collection);
  for (const int records :
       {1,   2,   3,   31,  32,  33,  63,   64,   65,   66,
        127, 128, 129, 511, 512, 513, 1000, 3299, 3300, 3301}) {
    const std::string bytes = std::to_string(16 * records);
    ASSERT_NO_FATAL_FAILURE(folder.expectMerge("-a -l -M " + bytes));
  }
  ASSERT_NO_FATAL_FAILURE(folder.expectMerge("-a -l -X"));
}

// The trailer's words, and lengths and partitions that nobody asks for.
TEST(Merge, IgnoresWhatIsNotNeeded) {
  const DataFolder folder{Collection{{"GATTACA", "TACA"}}};
  ASSERT_NO_FATAL_FAILURE(folder.expectMerge("-a -l"));
  const std::string array = folder.bytes("x.stpsa");
  folder.writeWords("x.stblengths", {14, 8, 99});
  folder.write("x.stplengths", "odd");  // too short to be a partitions file
  folder.writeWords("x_0.stbin", {0x8F100000, 0xFFFFFFFF});
  EXPECT_EQ(folder.merge("-a -U").status, 0);
  EXPECT_EQ(folder.bytes("x.stpsa"), array);
}

// More partitions than inputs, the empty ones anywhere.
TEST(Merge, CountsInputsPastEmptyPartitions) {
  const DataFolder folder{Collection{{"GATTACA", "TACA"}}};
  ASSERT_EQ(folder.merge("-a -l").status, 0);
  const std::string array = folder.bytes("x.stpsa");
  const std::string first = folder.bytes("x_0.stpsa");
  std::string second = folder.bytes("x_1.stpsa");
  for (size_t at = 0; at < second.size(); at += 16) second[at] &= 3;
  using Parts = std::vector<uint32_t>;
  for (const Parts& parts :
       {Parts{1, 0, 1}, Parts{0, 1, 1}, Parts{1, 0, 0, 1}, Parts{1, 1, 0}}) {
    folder.writeWords("x.stplengths", parts);
    const std::string* next = &first;
    for (size_t j = 0; j < parts.size(); j++) {
      folder.write("x_" + std::to_string(j) + ".stpsa",
                   parts[j] != 0 ? *next : "");
      if (parts[j] != 0) next = &second;
    }
    const Outcome outcome = folder.merge("-a -l -z");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(folder.bytes("x.stpsa"), array);
  }
  folder.writeWords("x.stplengths", {0, 0, 1, 1});
  EXPECT_EQ(folder.merge("-a -l -z").status, 1) << "the third is left out";
}

}  // namespace
