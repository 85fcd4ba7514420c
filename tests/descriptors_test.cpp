// More streams than descriptors.

#include <gtest/gtest.h>

#include <string>

#include "support/data_folder.h"
#include "support/plain_merge.h"
#include "support/program.h"

namespace {

class Descriptors : public testing::Test {
 protected:
  Collection collection_{std::vector<std::string>(40, "GATTACA")};
  DataFolder folder_{collection_};
  const std::vector<Record> merged_ =
      plainMerge(collection_, Ties::kByArrival).records;
};

TEST_F(Descriptors, AreNeededOneAtATimeIfNoFileIsKeptOpen) {
  const Outcome outcome = runPalvor(
      {folder_.root(), "x", "-a", "-l", "-Z", "-M", "32"}, {.files = 12});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(folder_.records("x.stpsa"), merged_);
}

TEST_F(Descriptors, AreRaisedToTheHardLimitToKeepFilesOpen) {
  const Outcome outcome =
      runPalvor({folder_.root(), "x", "-a", "-f", "-M", "32"},
                {.files = 12, .hardFiles = 64});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(folder_.records("x.stpsa"), merged_);
}

TEST_F(Descriptors, ThatDoNotSufficeEndTheRun) {
  const Outcome outcome =
      runPalvor({folder_.root(), "x", "-a", "-q", "-f"}, {.files = 12});
  EXPECT_EQ(outcome.status, 1);
  // Three standard streams, and arrays 0 to 8; less what the test passes on.
  EXPECT_NE(outcome.err.find("## ERROR: can't open Suffix file " +
                             folder_.path("x_")),
            std::string::npos)
      << outcome.err;
  EXPECT_FALSE(folder_.holds("x.stpsa"));
}

}  // namespace
