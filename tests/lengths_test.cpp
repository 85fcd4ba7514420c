#include "run/lengths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run/values.h"
#include "support/data_folder.h"

namespace {

using testing::ElementsAre;

class Lengths : public testing::Test {
 protected:
  // Reads the folder's partitions file alone.
  std::vector<unsigned> partitions(int entries, int n) {
    std::vector<unsigned> table(static_cast<size_t>(entries), 0);
    nparts = entries;
    readPartitionInfo("", "", folder_.path("x.stplengths").c_str(), nullptr,
                      nullptr, table.data(), n);
    return table;
  }

  DataFolder folder_{Collection{{"ACGT"}}};
};

TEST_F(Lengths, TakePartitionsUpToTheNumberOfInputsOrTheTable) {
  folder_.writeWords("x.stplengths", {7, 8, 9});
  EXPECT_THAT(partitions(3, 5), ElementsAre(7, 8, 9));
  EXPECT_THAT(partitions(3, 2), ElementsAre(7, 8, 0));
  folder_.write("x.stplengths", bytesOf({7, 8, 9}) + "odd");
  EXPECT_THAT(partitions(3, 5), ElementsAre(7, 8, 9));
  EXPECT_THAT(partitions(2, 5), ElementsAre(7, 8)) << "a file that grew";
}

TEST_F(Lengths, EndTheRunIfPartitionsCannotBeOpened) {
  unsigned table[1];
  EXPECT_EXIT(readPartitionInfo("", "", "no/file", nullptr, nullptr, table, 0),
              testing::ExitedWithCode(1),
              "^# no/file: No such file or directory\n"
              "## ERROR: Could not open partitions file \"no/file\"\n$");
}

}  // namespace
