// What a run says of itself, line by line, through the real program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::StartsWith;

class Statistics : public testing::Test {
 protected:
  // What a run with -a says, but for the two lines before its options.
  std::vector<std::string> linesWith(const std::string& options) {
    const Outcome outcome = folder_.merge("-a " + options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    std::vector<std::string> lines = linesOf(outcome.err);
    lines.erase(lines.begin(), lines.begin() + 2);
    return lines;
  }

  DataFolder folder_{Collection{{"G", "A", "T"}}};
  const std::string root_ = folder_.root();
};

const char* const kFinalLine =
    "# Palvor: mem [0-9]+ bytes, [0-9]+ PFs, real [0-9]+ ms, lcp [0-9]+ ms, "
    "r/w [0-9]+/[0-9]+ ms, time [0-9]+ ms";

TEST_F(Statistics, AreExactForAMergeDoneByHand) {
  EXPECT_THAT(
      linesOf(folder_.merge("-a -n 2 -M 1600").err),
      ElementsAre(
          "# Command(8): " + programPath() + " " + root_ +
              " x -a -n 2 -M 1600 ",
          MatchesRegex("# Version: [A-Z][a-z]+ [ 0-9][0-9] [0-9]+ [0-9:]+"),
          "# merge options: sarray maxNodes=2 sBuffSize=1600 ",
          "# total length = 3, max input size = 1, number of inputs = 3, "
          "number of parts = 3",
          MatchesRegex("# in buff: 100 suffixes, out buff: 2 nodes, SS=16 "
                       "NS=12,  real [0-9]+ ms"),
          MatchesRegex("# Flush array   0: nbuff=2 t=[0-9]+ ms"),
          MatchesRegex("# Flush array   1: nbuff=1 t=[0-9]+ ms"),
          "# Merge done: 3, 0 STs, tnp2=3 tlcmp=3 tncmp=3 tnrc=0/2 tnac=0",
          "#   maxp=0 tnlcp=0 alcp=0 maxlcp=0 nmlcp=0/0  tngb=0",
          MatchesRegex(kFinalLine)));
  EXPECT_THAT(linesWith("-H"),
              Contains("# Merge done: 3, 0 STs, tnp2=3 tlcmp=0 tncmp=3 "
                       "tnrc=0/0 tnac=0"));
}

TEST_F(Statistics, ListTheOptionsInTheirOrder) {
  for (const char* name : {"x_0.stpsa", "x_1.stpsa", "x_2.stpsa"}) {
    folder_.write(name, "");  // so that -z, too, may be given
  }
  EXPECT_EQ(
      linesWith("-N 7 -x 99 -i 4 -M 64 -m 1e8 -n 5 -J 2 -s x -S " + root_ +
                " -p x -o " + root_ +
                " -Z -z -U -R -C -f -b -H -L -X -w -l -v -c -h")
          .at(31),
      "# merge options: check verbose sarray larray czep (deprecated) noprefix "
      "noheap (deprecated) hpflag bsuffix useFPs compact reorder usemmap "
      "iorigin Manzini odir=" +
          root_ + " opfx=x sdir=" + root_ +
          " spfx=x Joption=2 maxNodes=5 maxSAMem=100000000 sBuffSize=64 "
          "maxIter=4 pfxlen=99 nmerge=7 ");
  EXPECT_EQ(linesWith("-n 0").at(0), "# merge options: sarray ");
  EXPECT_EQ(linesOf(runPalvor({root_, "missing"}).err).at(2),
            "# merge options: none");
}

TEST_F(Statistics, SizeTheBuffers) {
  struct Row {
    std::string options;
    std::vector<uint32_t> lengths;
    int in, out;
  };
  for (const Row& row : {
           Row{"", {7, 500000, 3}, 6250000, 500000},
           Row{"", {7, 3000000, 3}, 6250000, 1048576},
           Row{"", {0, 0, 0}, 6250000, 1},
           Row{"", {0xFFFFFFFF, 3, 0}, 6250000, 3},
           Row{"-N 2", {7, 8, 9}, 9375000, 8},
           Row{"-N 9", {7, 8, 9}, 6250000, 9},
           Row{"-m 4800", {7, 8, 9}, 100, 9},
           Row{"-m 4847 -n 5", {7, 8, 9}, 100, 5},
           Row{"-m 2^31 -M 1615", {7, 8, 9}, 100, 9},
           Row{"-n 0 -M 0", {7, 8, 9}, 6250000, 9},
       }) {
    folder_.writeWords("x.stlengths", row.lengths);
    EXPECT_THAT(
        linesWith(row.options),
        Contains(StartsWith("# in buff: " + std::to_string(row.in) +
                            " suffixes, out buff: " + std::to_string(row.out) +
                            " nodes, SS=16 NS=12,  real ")))
        << row.options;
  }
}

TEST_F(Statistics, WarnOfOptions) {
  EXPECT_THAT(
      linesWith("-M 15"),
      IsSupersetOf({"# WARNING: an input buffer holds no record of 16 bytes: "
                    "nothing will be merged (see -m and -M)",
                    "# Merge done: 0, 0 STs, tnp2=0 tlcmp=0 tncmp=0 tnrc=0/0 "
                    "tnac=0"}));
  const std::vector<std::string> lines = linesWith("-J 1-4,6");
  EXPECT_EQ(lines.at(0), "# merge options: sarray Joption=1-4,6 ");
  EXPECT_EQ(lines.at(1), "# WARNING: J option unimplemented!");
  EXPECT_EQ(linesWith("-m 1e4K").at(1), "# WARNING: -m 1e4K is read as 10000");
  EXPECT_EQ(linesWith("-m 3e9").at(1),
            "# WARNING: -m 3e9 is read as 2147483647");
  EXPECT_THAT(linesWith("-m 9e3K -J 1 -quiet -l"), ElementsAre());
  // What comes out is empty, which nobody may be left to find out.
  EXPECT_THAT(
      linesWith("-m 1G -J 1 -quiet -l"),
      ElementsAre("# WARNING: an input buffer holds no record of 16 bytes: "
                  "nothing will be merged (see -m and -M; -m 1G is read as "
                  "1)"));
}

}  // namespace
