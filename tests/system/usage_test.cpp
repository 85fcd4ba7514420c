#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

// The lines that follow the one with the program's name.
std::vector<std::string> usageIn(const std::string& err) {
  std::vector<std::string> lines = linesOf(err);
  const auto title = std::find_if(lines.begin(), lines.end(), [](auto& line) {
    return line.ends_with(" <inputdir> <inputfileprefix> [-options...]");
  });
  return {title == lines.end() ? title : title + 1, lines.end()};
}

TEST(Usage, IsShownWhenAskedForAndToTooShortCommands) {
  const DataFolder folder{Collection{{"GATTACA"}}};
  const Outcome help = folder.merge("-h -a -q");
  EXPECT_EQ(help.status, 0);
  const std::vector<std::string> usage = usageIn(help.err);
  ASSERT_EQ(usage.size(), 30u);
  EXPECT_EQ(usage[4],
            "# \t-J <s> \t# indexes of relevance, eg. \"-J 1-4,6\" "
            "(unimplemented)");
  EXPECT_EQ(usage[15],
            "# \t-l\t# lcp array - make lcp array output (use only with -a)");
  EXPECT_TRUE(folder.holds("x.stpsa"));
  for (const char* few : {"", "-h", "data/"}) {
    const Outcome outcome = runPalvor(wordsOf(few));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(usageIn(outcome.err), usage);
    EXPECT_EQ(linesOf(outcome.err).size(), 33u);
  }
}

}  // namespace
