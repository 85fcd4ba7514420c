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

TEST(Numbers, AreReadAsPowersOrDecimals) {
  // "text=number", where MAX and MIN are those of an int.
  for (const std::string row : {"2^20=1048576",
                                "2^0=1",
                                "2^32=1",
                                "2^33=2",
                                "2^-1=MIN",
                                "2^31=MIN",
                                "2^=1",
                                "2^99999999999999999999=MIN",
                                "2=2",
                                "22^3=22",
                                "1e8=100000000",
                                "2.5e6=2500000",
                                "1.99=1",
                                "-1.99=-1",
                                "+7=7",
                                " 7=7",
                                "64K=64",
                                "abc=0",
                                "=0",
                                "nan=0",
                                "2147483647=MAX",
                                "2147483647.5=MAX",
                                "2147483648=MAX",
                                "1e300=MAX",
                                "inf=MAX",
                                "-2147483648=MIN",
                                "-1e300=MIN"}) {
    const size_t equals = row.find('=');
    const std::string number = row.substr(equals + 1);
    const int want = number == "MAX"   ? INT_MAX
                     : number == "MIN" ? INT_MIN
                                       : std::stoi(number);
    EXPECT_EQ(getNum(row.substr(0, equals).c_str()), want) << row;
  }
}

TEST(ArgumentScan, MixesOptionsAndPositionalValues) {
  const PathArguments paths =
      scan({"-quiet", "-m", "1e3", "data/", "-o", "out/", "-m", "2^20", "chr",
            "-S", "", "-abc", "-x", "99", "-n", "0", "-J", "1-4,6"});
  EXPECT_STREQ(paths.inputdir, "data/");
  EXPECT_STREQ(paths.inputfileprefix, "chr");
  EXPECT_STREQ(paths.odir, "out/");
  EXPECT_STREQ(paths.sdir, "") << "an empty text is a given one";
  EXPECT_EQ(paths.opfx, nullptr);
  EXPECT_STREQ(Joption, "1-4,6");
  EXPECT_EQ(quiet, 1);
  EXPECT_EQ(sarray, 1) << "only the first letter counts";
  EXPECT_EQ(bsuffix, 0);
  EXPECT_EQ(check, 0);
  EXPECT_EQ(maxSAMem, 1048576) << "the later of two counts";
  EXPECT_EQ(pfxlen, 99);
  EXPECT_EQ(maxNodes, 0);
}

}  // namespace
