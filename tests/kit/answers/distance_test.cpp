// palvor-kit distance through the real programs, against k-mers and common
// substrings that are looked for one by one.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kit/answers/genome_matrix.h"
#include "kit/answers/made_collection.h"
#include "kit/answers/neighbour_joining.h"

namespace {

using testing::HasSubstr;

using Json = nlohmann::json;

std::vector<std::string> textsOf(const MadeCollection& made, uint32_t genome,
                                 bool both) {
  std::vector<std::string> texts;
  for (const Piece& piece : made.pieces()) {
    if (piece.genome != genome) continue;
    texts.push_back(piece.text);
    if (both) texts.push_back(reverseComplementOf(piece.text));
  }
  return texts;
}

std::set<std::string> kmersOf(const MadeCollection& made, uint32_t genome,
                              size_t k, bool canonical) {
  std::set<std::string> kmers;
  for (const std::string& text : textsOf(made, genome, false)) {
    for (size_t i = 0; i + k <= text.size(); i++) {
      const std::string kmer = text.substr(i, k);
      kmers.insert(canonical ? std::min(kmer, reverseComplementOf(kmer))
                             : kmer);
    }
  }
  return kmers;
}

size_t longestAt(const std::string& text, size_t begin,
                 const std::vector<std::string>& others) {
  size_t longest = 0;
  for (const std::string& other : others) {
    for (size_t at = 0; at < other.size(); at++) {
      size_t n = 0;
      while (begin + n < text.size() && at + n < other.size() &&
             text[begin + n] == other[at + n]) {
        n++;
      }
      longest = std::max(longest, n);
    }
  }
  return longest;
}

double oneWay(const std::vector<std::string>& a,
              const std::vector<std::string>& b) {
  double sum = 0, own = 0, other = 0;
  for (const std::string& text : a) {
    for (size_t i = 0; i < text.size(); i++) {
      sum += static_cast<double>(longestAt(text, i, b));
    }
    own += static_cast<double>(text.size());
  }
  for (const std::string& text : b) other += static_cast<double>(text.size());
  return std::log(other) / (sum / own) - 2 * std::log(own) / own;
}

void expectPair(const MadeCollection& made, const Json& line, uint32_t a,
                uint32_t b, bool both) {
  const size_t k = line["k"];
  const auto ofA = kmersOf(made, a, k, both), ofB = kmersOf(made, b, k, both);
  std::vector<std::string> shared;
  std::set_intersection(ofA.begin(), ofA.end(), ofB.begin(), ofB.end(),
                        std::back_inserter(shared));
  const auto number = [](const auto& set) {
    return static_cast<double>(set.size());
  };
  EXPECT_EQ(line["shared"], shared.size());
  const double all = number(ofA) + number(ofB) - number(shared);
  const double jaccard = all == 0 ? 0 : number(shared) / all;
  EXPECT_NEAR(line["jaccard"], jaccard, 1e-9);
  if (!ofA.empty()) {
    EXPECT_NEAR(line["containment_a"], number(shared) / number(ofA), 1e-9);
  }
  if (!ofB.empty()) {
    EXPECT_NEAR(line["containment_b"], number(shared) / number(ofB), 1e-9);
  }
  const double mash =
      -std::log(2 * jaccard / (1 + jaccard)) / static_cast<double>(k);
  EXPECT_NEAR(line["mash"], jaccard == 0 ? 1 : std::min(mash, 1.0), 1e-9);
  const auto textsA = textsOf(made, a, both), textsB = textsOf(made, b, both);
  const double acs = (oneWay(textsA, textsB) + oneWay(textsB, textsA)) / 2;
  if (std::isfinite(acs)) {
    EXPECT_NEAR(line["acs"], acs, 1e-9);
  } else {
    EXPECT_FALSE(line.contains("acs"));
  }
}

TEST(Distance, ComparesAsIsComparedOneByOne) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const bool both = seed % 3 != 0;
    const MadeCollection made(randomFiles(random, seed % 4 == 0 ? 100 : 30),
                              both ? "--strands both" : "");
    const std::string options =
        fmt::format("-k {},{} --acs --json", 1 + seed % 6, 2 + seed % 40);
    const std::string out = made.expect("distance", options);
    EXPECT_EQ(made.expect("distance", options + " -j 2"), out);
    const auto lines = linesOf(out);
    size_t next = 0;
    for (int k = 0; k < 2; k++) {
      for (uint32_t a = 0; a < made.genomes(); a++) {
        for (uint32_t b = a + 1; b < made.genomes(); b++) {
          ASSERT_LT(next, lines.size());
          expectPair(made, Json::parse(lines[next++]), a, b, both);
        }
      }
    }
    EXPECT_EQ(next, lines.size());
    if (HasFailure()) break;
  }
}

const std::vector<SequenceFile> kFiles = {{"a.fa", {{"x", "GATTACA"}}},
                                          {"b b.fa", {{"y", "GATTACC"}}},
                                          {"c.fa", {{"z", "GATCC"}}}};

TEST(Distance, PrintsTableMatrixAndTree) {
  const MadeCollection made(kFiles, "");
  const std::string a = made.folder().path("a.fa");
  const std::string b = made.folder().path("b b.fa");
  const std::string c = made.folder().path("c.fa");
  // Of a's k-mers GA AT TT TA AC CA b has all but CA, and CC; c's are GA AT TC
  // CC.
  const auto row = [](const std::string& x, const std::string& y,
                      const std::string& rest) {
    return x + "\t" + y + "\t2\t" + rest + "\n";
  };
  EXPECT_EQ(made.expect("distance", "-k 2"),
            "a\tb\tk\tshared\tjaccard\tcontainment_a\tcontainment_b\tmash\n" +
                row(a, b,
                    "5\t0.714285714286\t0.833333333333\t0.833333333333\t"
                    "0.091160778397") +
                row(a, c, "2\t0.25\t0.333333333333\t0.5\t0.458145365937") +
                row(b, c, "3\t0.428571428571\t0.5\t0.75\t0.255412811883"));
  EXPECT_EQ(made.expect("distance", "-k 2 --format phylip --measure jaccard"),
            "3\n" + a + " 0.00000000 0.28571429 0.75000000\n" +
                made.folder().path("b_b.fa") +
                " 0.28571429 0.00000000 0.57142857\n" + c +
                " 0.75000000 0.57142857 0.00000000\n");
  EXPECT_EQ(made.expect("distance", "-k 2 --format newick --measure jaccard"),
            "(" + a + ":0.232143,'" + b + "':0.0535714," + c + ":0.517857);\n");
}

TEST(Distance, TellsNoneAndRefusesWhatHasNone) {
  const MadeCollection made(kFiles, "");
  EXPECT_THAT(made.run("distance", "-k 2,3 --format newick").err,
              HasSubstr("a matrix or tree is of one k"));
  EXPECT_THAT(made.run("distance", "-k 0").err, HasSubstr("not in range"));
  EXPECT_THAT(made.run("distance", "").err,
              HasSubstr("note: the folder does not hold both strands"));
  const MadeCollection same(
      {{"a.fa", {{"x", "GAT"}}}, {"b.fa", {{"y", "GAT"}}}}, "");
  EXPECT_THAT(same.expect("distance", "-k 2"),
              HasSubstr("\t2\t2\t1\t1\t1\t0\n"));
  EXPECT_THAT(same.run("distance", "--measure acs").err,
              HasSubstr("--measure is for --format"));
  const MadeCollection strange(
      {{"a.fa", {{"x", "AAAA"}}}, {"b.fa", {{"y", "CCC"}}}}, "");
  const Outcome run = strange.run("distance", "--format phylip --measure acs");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("have nothing in common"));
}

// The distances are those of a tree, which is found again: the lengths of the
// branches are 1 to 7, ((a:1,b:2):3,(c:4,d:5):6,e:7).
TEST(Distance, JoinsNeighboursOfATree) {
  const double between[5][5] = {{0, 3, 14, 15, 11},
                                {3, 0, 15, 16, 12},
                                {14, 15, 0, 9, 17},
                                {15, 16, 9, 0, 18},
                                {11, 12, 17, 18, 0}};
  kit::GenomeMatrix<double> distances(5);
  for (uint32_t i = 0; i < 5; i++) {
    for (uint32_t j = 0; j < 5; j++) distances(i, j) = between[i][j];
  }
  EXPECT_EQ(kit::neighbourJoining(distances, {"a", "b", "c", "d", "it's e"}),
            "((a:1,b:2):3,(c:4,d:5):6,'it''s e':7);");
  EXPECT_EQ(kit::neighbourJoining(kit::GenomeMatrix<double>(1), {"a"}), "a;");
  EXPECT_EQ(kit::neighbourJoining(kit::GenomeMatrix<double>(2), {"a", "b"}),
            "(a:0,b:0);");
}

}  // namespace
