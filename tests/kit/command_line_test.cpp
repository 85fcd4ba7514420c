// What palvor-kit says about itself, and about command lines that are wrong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/program.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, AloneListsTheCommands) {
  const Outcome run = runKit({});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, StartsWith("palvor-kit: error: which command?\n"));
  for (const char* command :
       {"build", "add", "status", "prepare", "check", "simulate", "view",
        "pangenome", "find", "distance", "shared", "markers", "export",
        "help"}) {
    EXPECT_THAT(run.err, HasSubstr(std::string("\n  ") + command + " "));
  }
}

TEST(CommandLine, HelpsInEitherOrder) {
  for (const char* command :
       {"build", "add", "status", "prepare", "check", "simulate", "view",
        "pangenome", "find", "distance", "shared", "markers", "export"}) {
    const Outcome asked = runKit({"help", command});
    EXPECT_EQ(asked.status, 0) << asked.err;
    EXPECT_THAT(asked.out,
                HasSubstr(std::string("Usage: palvor-kit ") + command));
    EXPECT_EQ(runKit({command, "--help"}).out, asked.out);
  }
  EXPECT_EQ(runKit({"help"}).out, runKit({"--help"}).out);
  EXPECT_THAT(runKit({"--version"}).out, StartsWith("palvor-kit "));
  EXPECT_THAT(runKit({"help", "veiw"}).err, HasSubstr("did you mean 'view'?"));
  for (const char* option : {"help", "--help"}) {
    const Outcome full = runKit({option}, {.output = "/dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.err, HasSubstr("standard output"));
  }
}

TEST(CommandLine, MayBeWrongWhereNoMessageCanBeWritten) {
  const Outcome run = runKit(
      {"chek"}, {.under = {"sh", "-c", "exec \"$@\" 2> /dev/full", "sh"}});
  EXPECT_EQ(run.status, 1);
}

TEST(CommandLine, NamesTheWrongWordAndTheNearestRightOne) {
  const std::pair<const char*, const char*> cases[] = {
      {"chek data/ coli", "there is no command 'chek'; did you mean 'check'?"},
      {"prepaer", "there is no command 'prepaer'; did you mean 'prepare'?"},
      {"frobnicate", "there is no command 'frobnicate'\n"},
      {"--versoin",
       "there is no option '--versoin'; did you mean '--version'?"},
      {"prepare --jobbs 2",
       "there is no option '--jobbs'; did you mean '--jobs'?"},
      {"prepare -o d -p x a.fa --ambigous=skip",
       "there is no option '--ambigous'; did you mean '--ambiguous'?"},
      {"check data/ coli --xyz", "there is no option '--xyz'\n"},
      {"check data/ coli -Q", "there is no option '-Q'\n"},
      {"check data/ coli more", "'more' is one word too many\n"},
      {"simulate --genomes 2 --length 9", "--divergence is required\n"},
      {"check data/ coli -N 0", "Value 0 not in range 1 to 2147483647"},
      {"view", "files is required\n"},
      {"export data/ coli xml", "'xml' is none of bwt, sa, lcp, da\n"},
      {"build --strands 1 a.fa", "'1' is none of forward, both\n"},
      {"build --memory -1G a.fa", "-1G is less than nothing\n"},
  };
  for (const auto& [line, reason] : cases) {
    SCOPED_TRACE(line);
    const Outcome run = runKit(wordsOf(line));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err,
                AllOf(StartsWith("palvor-kit: error: "), HasSubstr(reason),
                      HasSubstr("\nSee palvor-kit ")));
  }
  EXPECT_THAT(runKit({"view"}).err, HasSubstr("See palvor-kit view --help\n"));
  // Options of several numbers leave what stands behind them.
  for (const char* line : {"pangenome --quorum 0.5 none/ x --max-k 2",
                           "distance -k 21 none/ x --acs"}) {
    EXPECT_THAT(runKit(wordsOf(line)).err, HasSubstr("none/x.ST/x.stlengths"));
  }
}

}  // namespace
