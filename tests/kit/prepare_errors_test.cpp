// What palvor-kit prepare refuses, through the real program: each ends with a
// message and status 1, and leaves nothing that looks whole.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using Arguments = std::vector<std::string>;

class PrepareErrors : public testing::Test {
 protected:
  // Runs prepare and expects it to fail and say `said`.
  void expectError(const Arguments& arguments, const std::string& said,
                   const Setting& setting = {}) {
    Arguments all = {"prepare"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::string line;
    for (const std::string& word : all) line += " " + word;
    const Outcome outcome = runKit(all, setting);
    EXPECT_EQ(outcome.status, 1) << line << "\n" << outcome.err;
    EXPECT_NE(outcome.err.find(said), std::string::npos)
        << said << " in " << line << "\n"
        << outcome.err;
    EXPECT_EQ(outcome.out, "") << line;
    EXPECT_FALSE(folder_.holds("out/x.ST/x.stlengths")) << line;
    for (const auto& [name, bytes] : folder_.files("out/x.ST")) {
      EXPECT_FALSE(name.ends_with(".part")) << line << ": " << name;
    }
  }

  Arguments withFile(const std::string& bytes, const Arguments& more = {}) {
    Arguments arguments = {"--force", "-o", folder_.path("out"),
                           "-p",      "x",  folder_.write("in.fa", bytes)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  TemporaryFolder folder_;
};

TEST_F(PrepareErrors, NameTheFileAndTheReason) {
  const std::string good = folder_.write("good.fa", ">x\nACGT\n");
  const std::string in = folder_.path("in.fa");
  expectError(withFile("ACGT\n"), in + ":1: ");
  expectError(withFile(">x\nAC\nA!\n"), in + ":3: '!'");
  expectError(withFile("@x\nACGT\n+\nIII\n"), in + ":4: ");
  expectError(withFile(">x\nACNT\n", {"--ambiguous", "error"}), in + ":2: ");
  expectError(withFile("\x1f\x8b garbage"), in + ": ");
  // After an array that was complete, and with several at work.
  expectError(withFile(">x\nACGT\n", {good, folder_.write("b.fa", "?")}),
              "b.fa:1: ");
  expectError(
      withFile(">x\nACGT\n", {"-j", "4", good, good, folder_.path("none")}),
      "none: No such file");
  std::filesystem::create_directory(folder_.path("folder"));
  expectError(withFile(">x\nA\n", {folder_.path("folder")}),
              folder_.path("folder") + ": ");
}

TEST_F(PrepareErrors, IncludeOutputThatCannotBeWritten) {
  const std::string genome = ">x\n" + std::string(20'000, 'A') + "\n";
  expectError(withFile(genome), "File too large", {.fileSize = 100'000});
  expectError(withFile(genome, {"--lcp", "-j", "2"}), "File too large",
              {.fileSize = 2'000});
  const std::string file = folder_.write("file", "");
  const std::string good = folder_.write("good.fa", ">x\nACGT\n");
  expectError({"-o", file, "-p", "x", good}, file);
  std::filesystem::create_directories(folder_.path("a/x.ST/x_0.stpsa.part/f"));
  expectError({"-o", folder_.path("a"), "-p", "x", good}, "x.ST");

  const Outcome unsaid =
      runKit({"prepare", "-o", folder_.path("full"), "-p", "x", good},
             {.output = "/dev/full"});
  EXPECT_EQ(unsaid.status, 1);
  EXPECT_NE(unsaid.err.find("standard output"), std::string::npos)
      << unsaid.err;
}

TEST_F(PrepareErrors, IncludeNamesThatPalvorCannotTake) {
  const std::string good = folder_.write("good.fa", ">x\nACGT\n");
  const std::string out = folder_.path("out");
  for (const char* prefix : {"", "a/b"}) {
    expectError({"-o", out, "-p", prefix, good}, "prefix");
  }
  expectError({"-o", out, "--prefix=-x", good}, "prefix");
  expectError({"-o", out, "-p", std::string(95, 'p'), good}, "199");
  expectError({"-o", out + "/" + std::string(190, 'd'), "-p", "x", good},
              "199");
  EXPECT_FALSE(folder_.holds("out"));
}

TEST_F(PrepareErrors, IncludeWrongOptions) {
  const std::string out = folder_.path("out");
  expectError({"-o", out, "-p", "x"}, "files");
  expectError({"-p", "x", "f"}, "--output");
  expectError({"-o", out, "f"}, "--prefix");
  for (const char* jobs : {"0", "-1", "x", "99999999999"}) {
    expectError(withFile(">x\nA\n", {"-j", jobs}), "--jobs");
  }
  expectError(withFile(">x\nA\n", {"--ambiguous", "keep"}), "--ambiguous");
  expectError(withFile(">x\nA\n", {"--psa-per", "base"}), "--psa-per");
  expectError(withFile(">x\nA\n", {"--no-such"}), "--no-such");
  EXPECT_EQ(runKit({}).status, 1);
  EXPECT_EQ(runKit({"no-such"}).status, 1);
}

TEST_F(PrepareErrors, AreNoneForHelpAndVersion) {
  for (const Arguments& arguments :
       {Arguments{"--help"}, Arguments{"--version"},
        Arguments{"prepare", "--help"}, Arguments{"simulate", "--help"}}) {
    const Outcome outcome = runKit(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
  }
}

}  // namespace
