// palvor-kit prepare through the real program: what is in the folder.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/plain_merge.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using Files = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

template <typename T>
std::vector<T> arrayOf(const std::string& bytes) {
  EXPECT_EQ(bytes.size() % sizeof(T), 0u);
  std::vector<T> elements(bytes.size() / sizeof(T));
  std::memcpy(elements.data(), bytes.data(), elements.size() * sizeof(T));
  return elements;
}

// A merge may give equal suffixes of different arrays in any order; brings each
// run of them into the order of the inputs.
void orderEqualSuffixes(const std::vector<std::string_view>& texts,
                        std::vector<Record>* records) {
  const auto begin = records->begin();
  for (size_t from = 0, to = 0; from < texts.size(); from = to) {
    while (to < texts.size() && texts[to] == texts[from]) to++;
    std::sort(begin + static_cast<ptrdiff_t>(from),
              begin + static_cast<ptrdiff_t>(to));
  }
}

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
    EXPECT_NE(outcome.err.find(said), std::string::npos) << said << " in\n"
                                                         << outcome.err;
  }
}

TEST_F(Prepare, WritesTheSameForAnyNumberOfJobs) {
  ASSERT_EQ(runKit({"simulate", "--genomes", "7", "--length", "3000",
                    "--divergence", "0.02", "-o", folder_.path("g")})
                .status,
            0);
  Arguments genomes;
  for (int i = 0; i < 7; i++) {
    genomes.push_back(folder_.path("g/genome_" + std::to_string(i) + ".fa"));
  }
  genomes.push_back(
      folder_.write("n", ">a\nACGTNNNACCA\n>b\nN\n>c\nTTNTT\n>d\nG\n"));
  for (const char* per : {"file", "record"}) {
    Files first;
    for (const char* jobs : {"1", "2", "5"}) {
      Arguments arguments = {"--lcp", "--force", "-j", jobs, "--psa-per", per};
      arguments.insert(arguments.end(), genomes.begin(), genomes.end());
      const Outcome outcome = prepare(arguments);
      ASSERT_EQ(outcome.status, 0) << outcome.err;
      if (first.empty()) first = files();
      EXPECT_EQ(files(), first) << jobs << " jobs, one array per " << per;
    }
  }
}

// The command that is printed, run as printed, must give the plain order.
TEST_F(Prepare, PrintsTheCommandThatMerges) {
  const std::vector<std::string> inputs = {
      "GATTACAGATTACAGATTACAGATTACAGATTACATTT",
      "ACA",
      "GATTACAGATTACAGATTACAGATTACAGATTACATTC",
      "GATTACAGATTACAGATTACAGATTACAGATTACATTT",
      "CCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCCC",
      "TTACATTT"};
  const std::string a =
      folder_.write("a", ">0\n" + inputs[0] + "\n>1\n" + inputs[1] + "N" +
                             inputs[2] + "\n>3\n" + inputs[3] + "\n");
  const std::string b =
      folder_.write("b", ">4\n" + inputs[4] + "\n>5\n" + inputs[5] + "\n");
  const Collection collection{inputs, {static_cast<int>(inputs.size())}};
  PlainArray want = plainArrays(collection).at(0);
  for (Record& record : want.records) record[0] &= ~3u;  // no flags
  const std::string spaced = folder_.path("it's spaced");
  for (const Arguments& options : std::vector<Arguments>{
           {}, {"--lcp"}, {"--zero-origin"}, {"--lcp", "--zero-origin"}}) {
    for (const char* per : {"file", "record"}) {
      Arguments arguments = {"prepare",   "-o", spaced,    "-p", "x y",
                             "--psa-per", per,  "--force", a,    b};
      arguments.insert(arguments.end(), options.begin(), options.end());
      const Outcome made = runKit(arguments);
      ASSERT_EQ(made.status, 0) << made.err;
      const Outcome merged = runShell(linesOf(made.out).back());
      ASSERT_EQ(merged.status, 0) << made.out << merged.err;

      Files found = folder_.files("it's spaced/x y.ST");
      auto records = arrayOf<Record>(found["x y.stpsa"]);
      ASSERT_EQ(records.size(), want.records.size()) << made.out;
      orderEqualSuffixes(want.texts, &records);
      EXPECT_EQ(records, want.records) << made.out;
      const auto entries = arrayOf<uint32_t>(found["x y.stlcp"]);
      EXPECT_EQ(entries, want.entries) << made.out;
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
  EXPECT_NE(refused.err.find("did not finish"), std::string::npos)
      << refused.err;
  EXPECT_EQ(prepare({a, "--force"}).status, 0);
  EXPECT_EQ(files().size(), 5u);
}

TEST_F(Prepare, RefusesAFolderWithDataUnlessForced) {
  const std::string a = folder_.write("a", ">x\nACGT\n");
  const std::string b = folder_.write("b", ">y\nGGTT\n>z\nC\n");
  ASSERT_EQ(prepare({b, b}).status, 0);
  // Files of others, though they begin alike, are nobody's to remove.
  const char* const others[] = {"x_notes.stuff", "x.st", "xx.stlengths",
                                "x_1.stbin.old", "y_0.stbin"};
  for (const char* other : others) {
    folder_.write(std::string("out/x.ST/") + other, "mine");
  }
  const char* const owned[] = {"x.stpsa", "x.stdiv", "x_12.stree",
                               "x_9.stpsa.part"};
  for (const char* own : owned) {
    folder_.write(std::string("out/x.ST/") + own, "old");
  }
  const Files before = files();
  const Outcome refused = prepare({a});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("--force"), std::string::npos) << refused.err;
  EXPECT_EQ(files(), before);

  ASSERT_EQ(prepare({a, "--force"}).status, 0);
  Files after = files();
  for (const char* other : others) EXPECT_EQ(after.erase(other), 1u) << other;
  EXPECT_EQ(after.size(), 5u);
  EXPECT_EQ(after["x.stlengths"], bytesOf({4}));
}

}  // namespace
