// palvor-kit check through the real program: what is right passes, and every
// single damage is named.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;

class Check : public testing::Test {
 protected:
  void SetUp() override {
    const std::string a = folder.write(
        "a.fa", ">x\nGATTACAGATTACACATTACAGATTACAGGATTACAACCA\n>y\nGATTA\n");
    const std::string b = folder.write("b.fa", ">z\nCATTACAGATTACANGATTA\n");
    ASSERT_EQ(
        runKit({"prepare", "-o", folder.path(""), "-p", "d", "--lcp", a, b})
            .status,
        0);
    ASSERT_EQ(runShell("palvor " + root() + " d -a -l -q").status, 0);
    ASSERT_EQ(runShell("palvor " + root() + " d -q -n 30").status, 0);
  }

  std::string root() const { return folder.path("") + "/"; }

  Outcome check(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"check", root(), "d"});
    return runKit(options);
  }

  // Changes one byte of a file by `mask`, checks, and changes it back.
  Outcome checkDamaged(const std::string& name, size_t offset, int mask) const {
    const std::string bytes = folder.read("d.ST/" + name);
    std::string damaged = bytes;
    damaged.at(offset) = static_cast<char>(damaged.at(offset) ^ mask);
    folder.write("d.ST/" + name, damaged);
    const Outcome run = check();
    folder.write("d.ST/" + name, bytes);
    return run;
  }

  const TemporaryFolder folder;
};

TEST_F(Check, PassesWhatIsRight) {
  const Outcome run = check({"-j", "2"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(run.out,
            "all right: 4 inputs, 2 suffix arrays, the merged array with its "
            "LCPs, the suffix tree partitions\n");
  EXPECT_THAT(check({"--json"}).out, HasSubstr("{\"faults\":0,"));
}

// Every byte of every file that the merge reads or writes matters, but for the
// flag bits, which the trees and arrays only carry.
TEST_F(Check, FindsEveryChangedByte) {
  const std::vector<std::pair<std::string, size_t>> files = {
      {"d.stlengths", 1}, {"d.stblengths", 1}, {"d.stplengths", 1},
      {"d_0.stbin", 3},   {"d_1.stpsa", 11},   {"d_0.stlcp", 11},
      {"d.stpsa", 41},    {"d.stlcp", 13},     {"d.stdiv", 5},
      {"d_0.stree", 7},   {"d_2.stree", 11}};
  for (const auto& [name, step] : files) {
    const size_t size = folder.read("d.ST/" + name).size();
    const bool entries = name.ends_with(".stlcp");
    for (size_t at = entries ? 4 : 0; at < size; at += step) {
      SCOPED_TRACE(name + " byte " + std::to_string(at));
      const Outcome run = checkDamaged(name, at, 4);
      ASSERT_EQ(run.status, 1);
      ASSERT_THAT(run.out + run.err, HasSubstr("d.ST/d"));
    }
  }
  EXPECT_EQ(check().status, 0);
}

TEST_F(Check, FindsWhatIsMissing) {
  const auto checkCut = [&](const std::string& name, size_t less) {
    const std::string bytes = folder.read("d.ST/" + name);
    folder.write("d.ST/" + name, bytes.substr(0, bytes.size() - less));
    const Outcome run = check({"--all"});
    folder.write("d.ST/" + name, bytes);
    EXPECT_EQ(run.status, 1) << name;
    return run.out + run.err;
  };
  EXPECT_THAT(checkCut("d.stpsa", 16), HasSubstr("is missing"));
  EXPECT_THAT(checkCut("d.stpsa", 1), HasSubstr("not a whole number"));
  EXPECT_THAT(checkCut("d_1.stpsa", 16), HasSubstr("is missing"));
  EXPECT_THAT(checkCut("d.stlcp", 4), HasSubstr("expected"));
  EXPECT_THAT(checkCut("d.stdiv", 24), HasSubstr("is in no tree"));
  EXPECT_THAT(checkCut("d_0.stree", 12), HasSubstr("by its divider"));
  EXPECT_THAT(checkCut("d_3.stbin", 4), HasSubstr("d_3.stbin"));
}

TEST_F(Check, CountsOnAndSaysWhereAndWhat) {
  const std::string array = folder.read("d.ST/d.stpsa");
  const size_t end = array.size();
  folder.write("d.ST/d.stpsa", array.substr(0, end - 32) +
                                   array.substr(end - 16) +
                                   array.substr(end - 32, 16));
  const Outcome all = check({"--all", "--json"});
  EXPECT_EQ(all.status, 1);
  EXPECT_THAT(all.out, HasSubstr("d.stpsa\",\"record\":" +
                                 std::to_string(end / 16 - 1) + ",\"fault\":"));
  EXPECT_THAT(all.out, HasSubstr("sorts before"));
  EXPECT_THAT(all.out, testing::Not(HasSubstr("{\"faults\":0")));
  EXPECT_THAT(check().err, HasSubstr("stopped at the first fault"));
}

TEST_F(Check, FailsWhereNothingWasMade) {
  const Outcome run = check({"-p", "other"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("neither a merged array"));
}

}  // namespace
