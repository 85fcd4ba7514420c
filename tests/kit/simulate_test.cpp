// palvor-kit simulate through the real program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
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

// For each leaf of a tree in Newick's notation, in their order, the lengths of
// the branches from the root on.
std::vector<std::vector<std::string>> branchesIn(const std::string& tree) {
  std::vector<std::vector<std::string>> leaves;
  std::vector<size_t> open;  // the leaves before each group that is open
  for (size_t at = 0; at < tree.size(); at++) {
    if (tree[at] == '(') open.push_back(leaves.size());
    size_t before = leaves.size();
    if (tree.compare(at, 7, "genome_") == 0) {
      leaves.emplace_back();
    } else if (tree[at] == ')' && tree[at + 1] == ':') {
      before = open.back();
    } else {
      if (tree[at] == ')') open.pop_back();
      continue;
    }
    if (tree[at] == ')') open.pop_back();
    at = tree.find(':', at) + 1;
    const std::string length =
        tree.substr(at, tree.find_first_of(",)", at) - at);
    at += length.size() - 1;
    for (size_t leaf = before; leaf < leaves.size(); leaf++) {
      leaves[leaf].insert(leaves[leaf].begin(), length);
    }
  }
  return leaves;
}

// How many of the strings of 24 characters of `a` stand in `b`.
size_t sharedStrings(const std::string& a, const std::string& b) {
  std::set<std::string> all;
  for (size_t i = 0; i + 24 <= b.size(); i++) all.insert(b.substr(i, 24));
  size_t shared = 0;
  for (size_t i = 0; i + 24 <= a.size(); i++)
    shared += all.count(a.substr(i, 24));
  return shared;
}

TEST(Simulate, LetsGenomesDescendAlongATree) {
  const TemporaryFolder folder;
  const Arguments options = {"--phylogeny", "-o", folder.path("p")};
  const Outcome outcome = simulate("12 20000 0.04 3", options);
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const std::string tree = folder.read("p/phylogeny.nwk");
  EXPECT_THAT(tree, testing::StartsWith("("));
  EXPECT_THAT(tree, testing::EndsWith(");\n"));
  EXPECT_EQ(std::count(tree.begin(), tree.end(), ','), 11);

  std::vector<std::string> genomes;
  std::string all;
  for (int i = 0; i < 12; i++) {
    const std::string fasta =
        folder.read("p/genome_" + std::to_string(i) + ".fa");
    all += fasta;
    genomes.push_back(fasta.substr(fasta.find('\n')));
    std::erase(genomes.back(), '\n');
  }
  EXPECT_EQ(simulate("12 20000 0.04 3", {"--phylogeny"}).out, all);

  // All are as far from the root, and those that share more of the way are more
  // alike.
  const auto branches = branchesIn(tree);
  ASSERT_EQ(branches.size(), 12u) << tree;
  std::vector<double> alone;
  for (const auto& way : branches) {
    double length = 0;
    for (const std::string& branch : way) length += std::stod(branch);
    EXPECT_NEAR(length, 0.04, 1e-7) << tree;
    alone.push_back(std::stod(way.back()));
  }
  const auto nearest = static_cast<size_t>(
      std::min_element(alone.begin(), alone.end()) - alone.begin());
  const bool isLeft = nearest + 1 < 12 && alone[nearest + 1] == alone[nearest];
  const size_t sister = isLeft ? nearest + 1 : nearest - 1;
  const size_t stranger = branches[nearest][0] == branches[0][0] ? 11 : 0;
  EXPECT_GT(sharedStrings(genomes[nearest], genomes[sister]),
            2 * sharedStrings(genomes[nearest], genomes[stranger]))
      << tree;

  EXPECT_EQ(simulate("2 100 1 1", {"--phylogeny"}).err,
            "palvor-kit: error: --phylogeny takes a --divergence below 1\n");
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
