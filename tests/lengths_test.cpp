#include "run/lengths.h"

#include <gtest/gtest.h>

#include <vector>

#include "run/values.h"
#include "support/data_folder.h"

namespace {

// Reads the first n entries of a partitions file into a table of `entries`, and
// returns the table with what follows it.
std::vector<unsigned> partitions(const std::string& path, int entries, int n) {
  std::vector<unsigned> table(static_cast<size_t>(entries) + 1, 0);
  nparts = entries;
  readPartitionInfo("", "", path.c_str(), nullptr, nullptr, table.data(), n);
  return table;
}

TEST(Lengths, TakePartitionsUpToTheNumberOfInputsOrTheTable) {
  using Table = std::vector<unsigned>;
  const DataFolder folder{Collection{}};
  const std::string path = folder.path("x.stplengths");
  folder.write("x.stplengths", bytesOf({7, 8, 9}) + "odd");
  EXPECT_EQ(partitions(path, 3, 5), (Table{7, 8, 9, 0}));
  EXPECT_EQ(partitions(path, 3, 2), (Table{7, 8, 0, 0}));
  EXPECT_EQ(partitions(path, 2, 5), (Table{7, 8, 0})) << "a file that grew";
  EXPECT_EXIT(partitions("no/file", 1, 1), testing::ExitedWithCode(1),
              "^# no/file: No such file or directory\n"
              "## ERROR: Could not open partitions file \"no/file\"\n$");
}

}  // namespace
