// palvor-kit simulate through the real program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using Arguments = std::vector<std::string>;

// Given the number of genomes, their length, their divergence and the seed.
Outcome simulate(const std::string& values, const Arguments& more = {},
                 const Setting& setting = {}) {
  const Arguments v = wordsOf(values);
  Arguments all = {"simulate",     "--genomes", v[0],     "--length", v[1],
                   "--divergence", v[2],        "--seed", v[3]};
  all.insert(all.end(), more.begin(), more.end());
  return runKit(all, setting);
}

std::string simulated(const std::string& values) {
  const Outcome outcome = simulate(values);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return outcome.out;
}

// The sequences of FASTA text, which must have lines of 80 characters.
std::vector<std::string> sequencesOf(const std::string& fasta) {
  std::vector<std::string> sequences;
  for (const std::string& line : linesOf(fasta)) {
    if (line == ">genome_" + std::to_string(sequences.size())) {
      sequences.emplace_back();
      continue;
    }
    EXPECT_EQ(sequences.back().size() % 80, 0u);
    EXPECT_LE(line.size(), 80u);
    EXPECT_EQ(line.find_first_not_of("ACGT"), std::string::npos);
    sequences.back() += line;
  }
  return sequences;
}

TEST(Simulate, GivesTheSameForTheSameSeed) {
  const std::string first = simulated("3 500 0.05 7");
  EXPECT_EQ(simulated("3 500 0.05 7"), first);
  EXPECT_NE(simulated("3 500 0.05 8"), first);
  // Known once, known for ever, on any machine.
  EXPECT_EQ(simulated("2 12 1 1"),
            ">genome_0\nAACACTCAGGAG\n>genome_1\nTACACTCCCGCC\n");
}

TEST(Simulate, MutatesOneAncestor) {
  const auto copies = sequencesOf(simulated("3 1000 0 1"));
  ASSERT_EQ(copies.size(), 3u);
  EXPECT_EQ(copies[0].size(), 1000u);
  EXPECT_EQ(copies[0], copies[1]);
  EXPECT_EQ(copies[0], copies[2]);

  // Up to the first indel mutations leave places comparable.
  const auto related = sequencesOf(simulated("2 100000 0.001 3"));
  ASSERT_EQ(related.size(), 2u);
  EXPECT_NE(related[0], related[1]);
  EXPECT_EQ(related[0].substr(0, 100), related[1].substr(0, 100));

  const auto strangers = sequencesOf(simulated("2 20000 1 3"));
  ASSERT_EQ(strangers.size(), 2u);
  EXPECT_EQ(strangers[1].size(), 20000u);
  int same = 0;
  for (size_t i = 0; i < 20000; i++) same += strangers[0][i] == strangers[1][i];
  EXPECT_NEAR(same, 5000, 400);
}

TEST(Simulate, WritesAFileForEachGenome) {
  const TemporaryFolder folder;
  const Outcome outcome = simulate("2 100 0.1 5", {"-o", folder.path("a/b")});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(folder.files("a/b").size(), 2u);
  EXPECT_EQ(folder.read("a/b/genome_0.fa") + folder.read("a/b/genome_1.fa"),
            simulated("2 100 0.1 5"));
}

TEST(Simulate, RefusesWrongValues) {
  for (const char* values :
       {"0 10 0.1 1", "-1 10 0.1 1", "2 0 0.1 1", "2 -5 0.1 1", "2 10 -0.1 1",
        "2 10 1.5 1", "2 10 often 1", "2 1e3000 0.1 1"}) {
    const Outcome outcome = simulate(values);
    EXPECT_EQ(outcome.status, 1) << values;
    EXPECT_NE(outcome.err, "") << values;
  }
  EXPECT_EQ(runKit({"simulate"}).status, 1);
  const Outcome full = simulate("2 100000 1 1", {}, {.output = "/dev/full"});
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err,
            "palvor-kit: error: can't write to standard output: No space left "
            "on device\n");
}

}  // namespace
