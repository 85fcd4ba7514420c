// palvor-kit check through the real program: what is right passes, and every
// damage is found.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "kit/check/made_files.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;

// Inputs longer than the strings' words and the records' prefixes.
Files longOnes() {
  return allMadeOf(">x\nGATTACAGATTACACATTACAGATTACAGGATTACAACCA\n>y\nGATTA\n",
                   ">z\nCATTACAGATTACANGATTA\n", 30);
}

// Until the system gives files a later time.
void waitForTheClock() {
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

TEST(Check, PassesWhatIsRight) {
  const Files files = longOnes();
  const Outcome run = check(files, {"-j", "2"});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_EQ(run.out,
            "all right: 4 inputs, 2 suffix arrays, the merged array with its "
            "LCPs, the suffix tree partitions\n");
  EXPECT_THAT(check(files, {"--json"}).out, HasSubstr("{\"faults\":0,"));
}

// Every byte of every file that the merge reads or writes matters, but for the
// flag bits, which the trees and arrays only carry.
TEST(Check, FindsEveryChangedByte) {
  const std::vector<std::pair<std::string, size_t>> steps = {
      {"d.stlengths", 3}, {"d.stblengths", 3}, {"d.stplengths", 1},
      {"d_0.stbin", 3},   {"d_1.stpsa", 21},   {"d_0.stlcp", 21},
      {"d.stpsa", 81},    {"d.stlcp", 27},     {"d.stdiv", 11},
      {"d_0.stree", 13},  {"d_2.stree", 13}};
  Files files = longOnes();
  for (const auto& [name, step] : steps) {
    std::string& bytes = files.at(name);
    // The first LCP entry means nothing.
    for (size_t at = name.ends_with(".stlcp") ? 4 : 0; at < bytes.size();
         at += step) {
      SCOPED_TRACE(name + " byte " + std::to_string(at));
      bytes[at] = static_cast<char>(bytes[at] ^ 4);
      const Outcome run = check(files);
      bytes[at] = static_cast<char>(bytes[at] ^ 4);
      ASSERT_EQ(run.status, 1);
      ASSERT_THAT(run.out + run.err, HasSubstr("d.ST/d"));
    }
  }
}

TEST(Check, GoesOnAndCounts) {
  Files files = longOnes();
  const size_t last = files["d.stpsa"].size() / kSuffix - 1;
  repeat(".stpsa", last - 1)(files);
  set("_1.stbin", 1, 1)(files);
  lose("_1.stpsa")(files);
  const Outcome all = check(files, {"--all"});
  EXPECT_EQ(all.status, 1);
  EXPECT_THAT(all.out, HasSubstr("d_1.stbin: record 1: the trailer"));
  EXPECT_THAT(all.out, HasSubstr("d_1.stpsa: No such file or directory\n"));
  EXPECT_THAT(all.out, HasSubstr("d.stpsa: record " + std::to_string(last) +
                                 ": suffix"));
  EXPECT_THAT(all.out, ContainsRegex("d.stpsa: suffix .* is missing\n"));
  EXPECT_EQ(all.err,
            "palvor-kit: error: " + std::to_string(linesOf(all.out).size()) +
                " faults found\n");
  EXPECT_THAT(check(files).err, HasSubstr("stopped at the first fault"));
}

// Each line is an object, whatever is wrong, and the last one sums up.
TEST(Check, ReportsInJson) {
  const Files right = longOnes();
  const auto lines = [&](const Change& change, const std::string& option) {
    Files files = right;
    change(files);
    const Outcome run = check(files, {"--json", option});
    EXPECT_EQ(run.status, 1);
    return linesOf(run.out);
  };
  const std::string stopped = R"({"faults":1,"complete":false,"checked":)";
  for (const char* option : {"-z", "--all"}) {
    // Nothing can be checked without the strings.
    const auto missing = lines(lose("_1.stbin"), option);
    ASSERT_EQ(missing.size(), 2U);
    EXPECT_THAT(missing[0],
                EndsWith(R"(d_1.stbin","fault":"No such file or directory"})"));
    EXPECT_EQ(missing[1], stopped + "\"\"}");
  }
  const auto cutOne = lines(cut(".stlcp", 3), "-j2");
  ASSERT_EQ(cutOne.size(), 2U);
  EXPECT_THAT(cutOne[0], ContainsRegex("d.stlcp\",\"fault\":\".* are not a"));
  EXPECT_THAT(cutOne[1], HasSubstr(stopped + "\"4 inputs, 2 suffix arrays,"));
  const auto going = lines(cut(".stlcp", 3), "--all");
  EXPECT_THAT(going.back(), HasSubstr(R"({"faults":1,"complete":true,)"));
  const auto record = lines(set("_1.stbin", 1, 1), "-j2");
  EXPECT_THAT(record[0], HasSubstr(R"(_1.stbin","record":1,"fault":"the)"));
}

TEST(Check, ReportsPathsThatAreNoUtf8InJson) {
  const TemporaryFolder folder;
  const Outcome run =
      runKit({"check", folder.path("\xFF\"\n/"), "d", "--json"});
  EXPECT_THAT(linesOf(run.out)[0], HasSubstr("/\xEF\xBF\xBD\\\"\\n/d.ST/d.st"));
}

TEST(Check, ProvesAMergeOfTheFirstInputs) {
  const TemporaryFolder folder;
  const std::string root = folder.path("");
  ASSERT_EQ(runKit({"prepare", "-o", root, "-p", "d", "--psa-per", "record",
                    folder.write("a.fa", ">x\nGATTC\n>y\nGA\n>z\nACC\n")})
                .status,
            0);
  for (const char* mode : {"-a", "-R"}) {
    ASSERT_EQ(runPalvor({root, "d", mode, "-q", "-N", "2", "-n", "4"}).status,
              0);
    const Outcome run = runKit({"check", root, "d", "-N", "2"});
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_THAT(run.out, HasSubstr("the first 2 of 3 inputs, 2 suffix arrays"));
    EXPECT_EQ(runKit({"check", root, "d"}).status, 1);
    EXPECT_EQ(runKit({"check", root, "d", "-N", "1"}).status, 1);
  }
  folder.write("d.ST/d.stplengths", std::string("\3\0\0\0", 4));
  EXPECT_THAT(runKit({"check", root, "d", "-N", "2"}).err,
              HasSubstr("palvor merges all inputs, whatever -N says"));
}

// A run for trees empties the dividers file first. Beside an array that an
// earlier run has left, the file tells only by its age what became of it.
TEST(Check, SeesARunForTreesThatWasKilled) {
  const TemporaryFolder folder;
  const std::string root = folder.path("");
  ASSERT_EQ(runKit({"prepare", "-o", root, "-p", "d",
                    folder.write("a.fa", ">x\nGATTC\n")})
                .status,
            0);
  ASSERT_EQ(runPalvor({root, "d", "-a", "-q"}).status, 0);
  EXPECT_EQ(runKit({"check", root, "d"}).status, 0);
  // A copy has the files in any order, and is as good.
  for (const auto& [name, bytes] : folder.files("d.ST")) {
    if (name != "d.stdiv") folder.write("copy/d.ST/" + name, bytes);
  }
  waitForTheClock();
  folder.write("copy/d.ST/d.stdiv", "");
  EXPECT_EQ(runKit({"check", folder.path("copy/"), "d"}).status, 0);

  folder.write("d.ST/d.stdiv", "");
  const Outcome killed = runKit({"check", root, "d"});
  EXPECT_EQ(killed.status, 1);
  EXPECT_THAT(killed.out, HasSubstr("/d.ST/d.stdiv: emptied after "));
}

}  // namespace
