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

#include "tests/kit/kit_program.h"
#include "tests/kit/slow_sort.h"
#include "tests/kit/temporary_folder.h"

namespace {

using Files = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

std::string bytesOf(const std::vector<uint32_t>& words) {
  std::string bytes;
  for (uint32_t word : words) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(word >> shift & 0xFF);
    }
  }
  return bytes;
}

template <typename T>
std::vector<T> arrayOf(const std::string& bytes) {
  EXPECT_EQ(bytes.size() % sizeof(T), 0u);
  std::vector<T> elements(bytes.size() / sizeof(T));
  std::memcpy(elements.data(), bytes.data(), elements.size() * sizeof(T));
  return elements;
}

// A merge may give equal suffixes of different arrays in any order; brings each
// run of them into the order of the inputs.
void orderEqualSuffixes(const std::vector<SlowSuffix>& suffixes,
                        std::vector<Suffix>* records) {
  const auto begin = records->begin();
  for (size_t from = 0, to = 0; from < suffixes.size(); from = to) {
    while (to < suffixes.size() && suffixes[to].text == suffixes[from].text) {
      to++;
    }
    std::sort(
        begin + static_cast<ptrdiff_t>(from),
        begin + static_cast<ptrdiff_t>(to),
        [](const Suffix& a, const Suffix& b) { return a.input < b.input; });
  }
}

class Prepare : public testing::Test {
 protected:
  KitOutcome prepare(Arguments arguments, const KitSetting& setting = {}) {
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
  const KitOutcome outcome = prepare({"--lcp", a, b});
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
  const KitOutcome outcome = prepare({a, "--zero-origin", b, b});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(lastLine(outcome.out),
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
  const KitOutcome outcome = prepare({"-"}, {.input = ">x\nACGT\n"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(files()["x.inputs.tsv"], "0\t0\t-\tx\t0\t4\n");
}

TEST_F(Prepare, SaysWhatWasLeftOut) {
  const std::string a = folder_.write("a", ">x\nACNNNGT\n>y\nNN\n>z\n");
  const std::string b = folder_.write("b", "");
  const KitOutcome outcome = prepare({a, b});
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
      const KitOutcome outcome = prepare(arguments);
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
  const std::vector<SlowSuffix> want = slowSort(inputs);
  const std::vector<uint32_t> wantEntries = slowEntries(want);
  const std::string spaced = folder_.path("it's spaced");
  for (const Arguments& options : std::vector<Arguments>{
           {}, {"--lcp"}, {"--zero-origin"}, {"--lcp", "--zero-origin"}}) {
    for (const char* per : {"file", "record"}) {
      Arguments arguments = {"prepare",   "-o", spaced,    "-p", "x y",
                             "--psa-per", per,  "--force", a,    b};
      arguments.insert(arguments.end(), options.begin(), options.end());
      const KitOutcome made = runKit(arguments);
      ASSERT_EQ(made.status, 0) << made.err;
      const KitOutcome merged = runShell(lastLine(made.out));
      ASSERT_EQ(merged.status, 0) << made.out << merged.err;

      Files found = folder_.files("it's spaced/x y.ST");
      auto records = arrayOf<Suffix>(found["x y.stpsa"]);
      ASSERT_EQ(records.size(), want.size()) << made.out;
      orderEqualSuffixes(want, &records);
      for (size_t i = 0; i < want.size(); i++) {
        const Suffix record = slowRecord(want[i], 0);
        ASSERT_EQ(std::memcmp(&records[i], &record, sizeof record), 0)
            << made.out << "record " << i;
      }
      std::vector<uint32_t> entries = arrayOf<uint32_t>(found["x y.stlcp"]);
      ASSERT_EQ(entries.size(), want.size());
      entries[0] = 0;
      EXPECT_EQ(entries, wantEntries) << made.out;
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

  const KitOutcome refused = prepare({a});
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
  const KitOutcome refused = prepare({a});
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
