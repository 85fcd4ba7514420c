// palvor-kit prepare through the real program: what is in the folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

using Files = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

class Prepare : public testing::Test {
 protected:
  Outcome prepare(Arguments arguments, const Setting& setting = {}) {
    arguments.insert(arguments.begin(),
                     {"prepare", "-o", folder_.path("out"), "-p", "x"});
    return runKit(arguments, setting);
  }

  Files files() const { return folder_.files("out/x.ST"); }

  TemporaryFolder folder_;
};

TEST_F(Prepare, WritesTheseBytes) {
  const std::string a = folder_.write("a.fa", ">x\nGATTC\n");
  const std::string b = folder_.write("b\t\\.fa", ">y z\nAC\nNA\n");
  const Outcome outcome = prepare({"--lcp", a, b});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "palvor " + folder_.path("out/") + " x -a -l -Z\n");

  const std::string root = folder_.path("");
  const Files want = {
      {"x.stlengths", bytesOf({5, 2, 1})},
      {"x.stblengths", bytesOf({10, 4, 2})},
      {"x.stplengths", bytesOf({1, 2})},
      {"x.inputs.tsv", "0\t0\t" + root + "a.fa\tx\t0\t5\n" +  //
                           "1\t1\t" + root + "b\\t\\\\.fa\ty\t0\t2\n" +
                           "2\t1\t" + root + "b\\t\\\\.fa\ty\t3\t1\n"},
      {"x_0.stbin", bytesOf({0x8F400000, 0})},
      {"x_1.stbin", bytesOf({0x10000000, 0})},
      {"x_2.stbin", bytesOf({0, 0})},
      // ATTC, C, GATTC, TC, TTC
      {"x_0.stpsa",
       bytesOf({0, 1, 0x3D000000, 0, 0, 4, 0x40000000, 0, 0, 0, 0x8F400000, 0,
                0, 3, 0xD0000000, 0, 0, 2, 0xF4000000, 0})},
      {"x_0.stlcp", bytesOf({0, 3, 1, 3, 5})},
      // A, AC, C
      {"x_1.stpsa", bytesOf({2 << 2, 0, 0, 0, 1 << 2, 0, 0x10000000, 0,  //
                             1 << 2, 1, 0x40000000, 0})},
      {"x_1.stlcp", bytesOf({0, 4, 3})},
  };
  EXPECT_EQ(files(), want);
}

TEST_F(Prepare, CountsInputsFromZeroInEachArrayWhenTold) {
  const std::string a = folder_.write("a", ">x\nC\n");
  const std::string b = folder_.write("b", ">y\nG\n>z\nA\n");
  const Outcome outcome = prepare({a, "--zero-origin", b, b});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(linesOf(outcome.out).back(),
            "palvor " + folder_.path("out/") + " x -a -l -z");
  Files found = files();
  EXPECT_EQ(found["x.stplengths"], bytesOf({1, 2, 2}));
  EXPECT_EQ(found["x_1.stpsa"],
            bytesOf({1 << 2, 0, 0, 0, 0, 0, 0x80000000, 0}));
  EXPECT_EQ(found["x_2.stpsa"], found["x_1.stpsa"]);
  EXPECT_EQ(found.count("x_4.stbin"), 1u);
  EXPECT_EQ(found.count("x_5.stbin"), 0u);
}

TEST_F(Prepare, LeavesThePartitionsFileOutWhereItSaysNothing) {
  const std::string a = folder_.write("a", ">x\nC\n>n\nN\n");
  const std::string b = folder_.write("b", ">y\nG\n>z\nA\n");
  ASSERT_EQ(prepare({a, a}).status, 0);
  EXPECT_FALSE(folder_.holds("out/x.ST/x.stplengths"));
  ASSERT_EQ(prepare({a, b, "--psa-per", "record", "--force"}).status, 0);
  EXPECT_FALSE(folder_.holds("out/x.ST/x.stplengths"));
  EXPECT_EQ(files()["x.stlengths"], bytesOf({1, 1, 1}));
}

TEST_F(Prepare, ReadsStandardInput) {
  const Outcome outcome = prepare({"-"}, {.input = ">x\nACGT\n"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(files()["x.inputs.tsv"], "0\t0\t-\tx\t0\t4\n");
}

TEST_F(Prepare, SaysWhatWasLeftOut) {
  const std::string a = folder_.write("a", ">x\nACNNNGT\n>y\nNN\n>z\n");
  const std::string b = folder_.write("b", "");
  const Outcome outcome = prepare({a, b});
  ASSERT_EQ(outcome.status, 0);
  for (const char* said :
       {"2 files, 3 records, 2 inputs, 4 characters", "5 ambiguous characters",
        "1 inputs begun anew", "2 records without any", "1 files gave no"}) {
    EXPECT_THAT(outcome.err, HasSubstr(said));
  }
}

TEST_F(Prepare, WritesTheSameForAnyNumberOfJobs) {
  const std::string genomes = folder_.path("g");
  ASSERT_EQ(runKit(wordsOf("simulate --genomes 7 --length 3000 --divergence "
                           "0.02 -o " +
                           genomes))
                .status,
            0);
  Arguments inputs = {
      folder_.write("n", ">a\nACGTNNNACCA\n>b\nN\n>c\nTTNTT\n>d\nG\n")};
  for (const auto& [name, bytes] : folder_.files("g")) {
    inputs.push_back(genomes + "/" + name);
  }
  for (const std::string per : {"file", "record"}) {
    Files first;
    for (const std::string jobs : {"1", "2", "5"}) {
      Arguments arguments = {"--lcp", "--force", "-j", jobs, "--psa-per", per};
      arguments.insert(arguments.end(), inputs.begin(), inputs.end());
      const Outcome outcome = prepare(arguments);
      ASSERT_EQ(outcome.status, 0) << outcome.err;
      if (first.empty()) first = files();
      EXPECT_EQ(files(), first) << jobs << " jobs, one array per " << per;
    }
  }
}

// The command that is printed, run as printed, must give what is right.
TEST_F(Prepare, PrintsTheCommandThatMerges) {
  const std::string gattaca = "GATTACAGATTACAGATTACAGATTACAGATTACATT";
  const std::string a =
      folder_.write("a", ">0\n" + gattaca + "T\n>1\nACAN" + gattaca +
                             "C\n>3\n" + gattaca + "T\n");
  const std::string b =
      folder_.write("b", ">4\n" + std::string(50, 'C') + "\n>5\nTTACATTT\n");
  const std::string spaced = folder_.path("it's spaced/");
  for (const std::string per : {"file", "record"}) {
    for (const std::string options :
         {"", " --lcp", " --zero-origin", " --lcp --zero-origin"}) {
      Arguments arguments = {"prepare", "-o", spaced, "-p", "x y", a, b};
      for (const std::string& word :
           wordsOf("--force --psa-per " + per + options)) {
        arguments.push_back(word);
      }
      const Outcome made = runKit(arguments);
      ASSERT_EQ(made.status, 0) << made.err;
      const Outcome merged = runShell(linesOf(made.out).back());
      ASSERT_EQ(merged.status, 0) << made.out << merged.err;
      Arguments proof = {"check", spaced, "x y"};
      if (options.ends_with("--zero-origin")) proof.push_back("-z");
      EXPECT_THAT(runKit(proof).out, StartsWith("all right: 6 inputs, "))
          << made.out;
    }
  }
}

TEST_F(Prepare, KilledLeavesNothingThatLooksWhole) {
  const std::string a = folder_.write("a", ">x\nACGT\n");
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const pid_t child =
      startKit({"prepare", "-o", folder_.path("out"), "-p", "x", a, pipe});
  // It waits for somebody to write into the pipe, with the first array done.
  for (int i = 0; i < 1000 && !folder_.holds("out/x.ST/x_0.stpsa"); i++) {
    usleep(10'000);
  }
  EXPECT_TRUE(folder_.holds("out/x.ST/x_0.stpsa"));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(folder_.holds("out/x.ST/x.stlengths"));

  const Outcome refused = prepare({a});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("did not finish"));
  EXPECT_EQ(prepare({a, "--force"}).status, 0);
  EXPECT_EQ(files().size(), 5u);
}

TEST_F(Prepare, RefusesAFolderWithDataUnlessForced) {
  const std::string a = folder_.write("a", ">x\nACGT\n");
  const std::string b = folder_.write("b", ">y\nGGTT\n>z\nC\n");
  ASSERT_EQ(prepare({b, b}).status, 0);
  // Files of others, though they begin alike, are nobody's to remove.
  const std::string others[] = {"x_notes.stuff", "x.st", "xx.stlengths",
                                "x_1.stbin.old", "y_0.stbin"};
  for (const std::string& other : others) {
    folder_.write("out/x.ST/" + other, "mine");
  }
  for (const std::string own :
       {"x.stpsa", "x.stdiv", "x_12.stree", "x_9.stpsa.part"}) {
    folder_.write("out/x.ST/" + own, "old");
  }
  const Files before = files();
  const Outcome refused = prepare({a});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("--force"));
  EXPECT_EQ(files(), before);

  ASSERT_EQ(prepare({a, "--force"}).status, 0);
  Files after = files();
  for (const std::string& other : others)
    EXPECT_EQ(after.erase(other), 1u) << other;
  EXPECT_EQ(after.size(), 5u);
  EXPECT_EQ(after["x.stlengths"], bytesOf({4}));
}

}  // namespace
