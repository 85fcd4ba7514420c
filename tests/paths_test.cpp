#include "run/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

// A path has room for 199 characters.
TEST(Paths, AreShownIfTheyAreTooLong) {
  // The longest path is the dividers file's: <folder><prefix>.ST/<prefix>.stdiv
  for (const size_t length : {198u, 199u, 200u, 201u, 205u}) {
    const DataFolder folder{Collection{{"GATTACA"}}};
    const size_t fixed = folder.root().size() + 10;
    const size_t prefix = (length - fixed) / 2;
    const std::string root =
        folder.root() + ((length - fixed) % 2 != 0 ? "/" : "");
    const std::string out(prefix, 'p');
    SCOPED_TRACE(testing::Message() << length << " characters");
    const Outcome outcome = folder.merge("-a -q -o " + root + " -p " + out);
    if (length < 200) {
      EXPECT_EQ(outcome.status, 0) << outcome.err;
      continue;
    }
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.err).back(),
              "## ERROR: path of " + std::to_string(length) +
                  " characters is too long (at most 199): " + root + out +
                  ".ST/" + out + ".stdiv");
    EXPECT_FALSE(std::filesystem::exists(root + out + ".ST"));
  }
}

TEST(Paths, WithNumbersAreTestedBeforeAnyFileIsMade) {
  const DataFolder folder{Collection{{"GATTACA"}}};
  std::string sdir = folder.root();
  if (sdir.size() % 2 != 0) sdir += "/";
  const std::string spfx((200 - sdir.size() - 12) / 2, 's');
  const Outcome outcome = folder.merge("-a -q -S " + sdir + " -s " + spfx);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(linesOf(outcome.err).back(),
            "## ERROR: path of 200 characters is too long (at most 199): " +
                sdir + spfx + ".ST/" + spfx + "_0.stpsa");
  EXPECT_FALSE(folder.holds("x.stdiv"));
}

}  // namespace
