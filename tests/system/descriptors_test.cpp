// More streams than descriptors.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

TEST(Descriptors, AreNeededOneAtATimeIfNoFileIsKeptOpen) {
  const DataFolder folder{Collection{std::vector<std::string>(40, "GATTACA")}};
  EXPECT_EQ(folder.merge("-a -l -Z -M 32", {.files = 12}).status, 0);
  const std::string array = folder.bytes("x.stpsa");
  EXPECT_EQ(array.size(), 40 * 7 * 16u);

  // Kept open they need more: up to the hard limit it is raised.
  EXPECT_EQ(folder.merge("-a -f", {.files = 12, .hardFiles = 64}).status, 0);
  EXPECT_EQ(folder.bytes("x.stpsa"), array);
  const Outcome few = folder.merge("-a -q -f", {.files = 12});
  EXPECT_EQ(few.status, 1);
  EXPECT_THAT(few.err, testing::HasSubstr("## ERROR: can't open Suffix file " +
                                          folder.path("x_")));
}

}  // namespace
