#include "run/arguments.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "run/options.h"

namespace {

// Scans a command; the texts outlive the test, as arguments outlive a run.
PathArguments scan(const std::vector<std::string>& arguments) {
  auto* texts = new std::vector<std::string>(arguments);
  std::vector<char*> argv = {const_cast<char*>("palvor")};
  for (std::string& text : *texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  return scanArguments(static_cast<int>(argv.size()) - 1, argv.data());
}

void expectNumber(int number, const std::vector<const char*>& texts) {
  for (const char* text : texts) EXPECT_EQ(getNum(text), number) << text;
}

TEST(Numbers, AreReadAsPowersOrDecimals) {
  expectNumber(1, {"2^0", "2^32", "2^", "1.99"});
  expectNumber(2, {"2^33", "2"});
  expectNumber(7, {"+7", " 7"});
  expectNumber(22, {"22^3"});
  expectNumber(64, {"64K"});
  expectNumber(1048576, {"2^20"});
  expectNumber(2500000, {"2.5e6"});
  expectNumber(100000000, {"1e8"});
  expectNumber(0, {"abc", "", "nan"});
  expectNumber(-1, {"-1.99"});
  expectNumber(INT_MAX, {"2147483647", "2147483647.5", "2147483648", "1e300"});
  expectNumber(INT_MAX, {"inf"});
  expectNumber(INT_MIN, {"2^-1", "2^31", "2^99999999999999999999"});
  expectNumber(INT_MIN, {"-2147483648", "-1e300"});
}

TEST(ArgumentScan, MixesOptionsAndPositionalValues) {
  const PathArguments paths =
      scan({"-quiet", "-m", "1e3", "data/", "-o", "out/", "-m", "2^20", "chr",
            "-S", "", "-abc", "-x", "99", "-n", "0", "-J", "1-4,6"});
  EXPECT_STREQ(paths.inputdir, "data/");
  EXPECT_STREQ(paths.inputfileprefix, "chr");
  EXPECT_STREQ(paths.sdir, "") << "an empty text is a given one";
  EXPECT_EQ(paths.opfx, nullptr);
  EXPECT_STREQ(Joption, "1-4,6");
  EXPECT_EQ(sarray, 1) << "only the first letter counts";
  EXPECT_EQ(bsuffix, 0);
  EXPECT_EQ(maxSAMem, 1048576) << "the later of two counts";
}

}  // namespace
