// What palvor-kit prepare refuses, through the real program: each ends with a
// message and status 1, and leaves nothing that looks whole.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;

using Arguments = std::vector<std::string>;

class PrepareErrors : public testing::Test {
 protected:
  // Runs prepare and expects it to fail and say `said`.
  void expectError(const Arguments& arguments, const std::string& said,
                   const Setting& setting = {}) {
    Arguments all = {"prepare"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    SCOPED_TRACE(testing::PrintToString(all));
    const Outcome outcome = runKit(all, setting);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(said));
    EXPECT_EQ(outcome.out, "");
    EXPECT_FALSE(folder_.holds("out/x.ST/x.stlengths"));
    for (const auto& [name, bytes] : folder_.files("out/x.ST")) {
      EXPECT_FALSE(name.ends_with(".part")) << name;
    }
  }

  Arguments withFile(const std::string& bytes, const Arguments& more = {}) {
    Arguments arguments = {"--force", "-o", out_,
                           "-p",      "x",  folder_.write("in.fa", bytes)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  TemporaryFolder folder_;
  const std::string out_ = folder_.path("out");
  const std::string good_ = folder_.write("good.fa", ">x\nACGT\n");
};

TEST_F(PrepareErrors, NameTheFileAndTheReason) {
  const std::string in = folder_.path("in.fa");
  expectError(withFile("ACGT\n"), in + ":1: ");
  expectError(withFile(">x\nAC\nA!\n"), in + ":3: '!'");
  expectError(withFile("@x\nACGT\n+\nIII\n"), in + ":4: ");
  expectError(withFile(">x\nACNT\n", {"--ambiguous", "error"}), in + ":2: ");
  expectError(withFile("\x1f\x8b garbage"), in + ": ");
  expectError(withFile(">x\nACYT\n", {"--ambiguous", "error"}),
              "character 2 of record 'x' is 'Y'");
  // After an array that was complete, and with several at work.
  expectError(withFile(">x\nACGT\n", {good_, folder_.write("b.fa", "?")}),
              "b.fa:1: ");
  expectError(
      withFile(">x\nACGT\n", {"-j", "4", good_, good_, folder_.path("none")}),
      "none: No such file");
  std::filesystem::create_directory(folder_.path("folder"));
  expectError(withFile(">x\nA\n", {folder_.path("folder")}),
              folder_.path("folder") + ": ");
}

TEST_F(PrepareErrors, IncludeProtein) {
  const std::string in = folder_.path("in.fa");
  expectError(withFile(">x\nMKTAYIAKQRQISFVKSHFSRQ\n>y\nACGT\n"),
              in + ":2: 'I' in the sequence of record 'x'; of 22 letters 7 "
                   "stand for no nucleotide: this is probably protein");
  // One foreign letter among many is a fault of its own.
  const Outcome one =
      runKit({"prepare", "-o", out_, "-p", "x",
              folder_.write("one.fa", ">x\n" + std::string(50, 'A') + "E\n")});
  EXPECT_EQ(one.status, 1);
  EXPECT_THAT(one.err, testing::Not(HasSubstr("protein")));
  std::string codes = ">x\n", unknown = ">x\n";
  for (int i = 0; i < 40; i++) codes += "MK\nA", unknown += "NN\nA";
  expectError(withFile(codes),
              in + ": of 120 letters 80 are ambiguous: this is probably");
  EXPECT_EQ(runKit({"prepare", "-o", out_, "-p", "n",
                    folder_.write("unknown.fa", unknown)})
                .status,
            0);
}

TEST_F(PrepareErrors, IncludeOutputThatCannotBeWritten) {
  const std::string genome = ">x\n" + std::string(20'000, 'A') + "\n";
  expectError(withFile(genome), "File too large", {.fileSize = 100'000});
  expectError(withFile(genome, {"--lcp", "-j", "2"}), "File too large",
              {.fileSize = 2'000});
  const std::string file = folder_.write("file", "");
  expectError({"-o", file, "-p", "x", good_}, file);
  std::filesystem::create_directories(folder_.path("a/x.ST/x_0.stpsa.part/f"));
  expectError({"-o", folder_.path("a"), "-p", "x", good_}, "x.ST");

  // What an interrupted run left, and cannot be removed.
  folder_.write("b/x.ST/x.manifest.tsv", "");
  std::filesystem::create_directories(folder_.path("b/x.ST/x_0.stpsa/f"));
  expectError({"--force", "-o", folder_.path("b"), "-p", "x", good_},
              folder_.path("b/x.ST/x_0.stpsa") + ": Directory not empty\n");

  const Outcome unsaid =
      runKit({"prepare", "-o", folder_.path("full"), "-p", "x", good_},
             {.output = "/dev/full"});
  EXPECT_EQ(unsaid.status, 1);
  EXPECT_THAT(unsaid.err, HasSubstr("standard output"));
}

TEST_F(PrepareErrors, LeaveNoEmptyFolder) {
  const std::string deep = folder_.path("deep");
  expectError({"-o", deep + "/er", "-p", "x", folder_.path("none")}, "none: ");
  EXPECT_FALSE(std::filesystem::exists(deep));
  // What was there before stays.
  std::filesystem::create_directories(deep);
  expectError({"-o", deep, "-p", "x", folder_.write("bad.fa", "?")}, "bad.fa");
  EXPECT_TRUE(std::filesystem::is_empty(deep));
}

TEST_F(PrepareErrors, IncludeTextsThatRepeatTooMuchForTheMemory) {
  const std::string repeats = ">x\n" + std::string(6'000'000, 'A') + "\n";
  expectError(withFile(repeats, {"--memory", "40M"}),
              "in.fa: repeats itself so much that sorting it takes 30 MB");
}

TEST_F(PrepareErrors, IncludeNamesThatPalvorCannotTake) {
  expectError({"-o", out_, "-p", "", good_}, "prefix");
  expectError({"-o", out_, "-p", "a/b", good_}, "prefix");
  expectError({"-o", out_, "--prefix=-x", good_}, "prefix");
  expectError({"-o", out_, "-p", std::string(95, 'p'), good_}, "199");
  expectError({"-o", out_ + "/" + std::string(190, 'd'), "-p", "x", good_},
              "199");
  EXPECT_FALSE(folder_.holds("out"));
}

TEST_F(PrepareErrors, IncludeWrongOptions) {
  expectError({"-o", out_, "-p", "x"}, "files");
  expectError({"-p", "x", "f"}, "--output");
  expectError({"-o", out_, "f"}, "--prefix");
  for (const char* option : {"--jobs 0", "--jobs -1", "--jobs 99999999999",
                             "--ambiguous keep", "--psa-per base", "--such"}) {
    const Arguments words = wordsOf(option);
    expectError(withFile(">x\nA\n", words), words[0]);
  }
  EXPECT_EQ(runKit({}).status, 1);
  EXPECT_EQ(runKit({"no-such"}).status, 1);
}

TEST_F(PrepareErrors, AreNoneForHelpAndVersion) {
  for (const char* line :
       {"--help", "--version", "prepare --help", "simulate --help"}) {
    const Outcome outcome = runKit(wordsOf(line));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
  }
}

}  // namespace
