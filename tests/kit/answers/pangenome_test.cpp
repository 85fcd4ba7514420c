// palvor-kit pangenome through the real programs, against k-mers that are
// written down one by one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kit/answers/made_collection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

using Json = nlohmann::json;
using GenomeOf = std::map<std::string, uint32_t>;  // by record

enum class Strands { kForward, kApart, kCanonical };

// The genomes of each k-mer of a collection.
std::map<std::string, std::set<uint32_t>> kmersOf(
    const MadeCollection& made, size_t k, Strands strands,
    const GenomeOf& genomeOf = {}) {
  std::map<std::string, std::set<uint32_t>> genomes;
  for (const Piece& piece : made.pieces()) {
    const auto own = genomeOf.find(piece.record);
    const uint32_t genome = own == genomeOf.end() ? piece.genome : own->second;
    for (size_t i = 0; i + k <= piece.text.size(); i++) {
      const std::string kmer = piece.text.substr(i, k);
      const std::string reverse = reverseComplementOf(kmer);
      const bool asReverse = strands == Strands::kCanonical && reverse < kmer;
      genomes[asReverse ? reverse : kmer].insert(genome);
      if (strands == Strands::kApart) genomes[reverse].insert(genome);
    }
  }
  return genomes;
}

std::vector<uint64_t> histogramOf(
    const std::map<std::string, std::set<uint32_t>>& kmers, uint32_t genomes) {
  std::vector<uint64_t> histogram(genomes);
  for (const auto& [kmer, having] : kmers) histogram[having.size() - 1]++;
  return histogram;
}

uint64_t totalOf(const MadeCollection& made, size_t k) {
  uint64_t total = 0;
  for (const Piece& piece : made.pieces()) {
    if (piece.text.size() >= k) total += piece.text.size() - k + 1;
  }
  return total;
}

// The mean, over all choices of `chosen` genomes, of the k-mers that at least
// `wanted` of them have.
double expectedCount(const std::map<std::string, std::set<uint32_t>>& kmers,
                     uint32_t genomes, int chosen, int wanted) {
  double sum = 0, choices = 0;
  for (uint32_t choice = 0; choice < 1U << genomes; choice++) {
    if (__builtin_popcount(choice) != chosen) continue;
    choices++;
    for (const auto& [kmer, having] : kmers) {
      int found = 0;
      for (const uint32_t g : having) found += choice >> g & 1;
      sum += found >= wanted ? 1 : 0;
    }
  }
  return sum / choices;
}

std::vector<Json> jsonLines(const std::string& text) {
  std::vector<Json> lines;
  for (const std::string& line : linesOf(text)) {
    lines.push_back(Json::parse(line));
  }
  return lines;
}

void expectCounts(const MadeCollection& made, const std::string& options,
                  size_t minK, size_t maxK, Strands strands) {
  const auto lines = jsonLines(made.expect(
      "pangenome", options + " --json --min-k " + std::to_string(minK) +
                       " --max-k " + std::to_string(maxK)));
  ASSERT_EQ(lines.size(), maxK - minK + 1);
  for (size_t k = minK; k <= maxK; k++) {
    SCOPED_TRACE(k);
    const Json& line = lines[k - minK];
    const auto kmers = kmersOf(made, k, strands);
    EXPECT_EQ(line["k"], k);
    EXPECT_EQ(line["total"],
              (strands == Strands::kApart ? 2 : 1) * totalOf(made, k));
    EXPECT_EQ(line["distinct"], kmers.size());
    EXPECT_EQ(line["histogram"].get<std::vector<uint64_t>>(),
              histogramOf(kmers, made.genomes()));
  }
}

TEST(Pangenome, CountsAsIsCountedOneByOne) {
  for (unsigned seed = 1; seed <= 60; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto files = randomFiles(random, seed % 3 == 0 ? 150 : 30);
    const bool both = seed % 4 != 0;
    const MadeCollection made(files, both ? "--strands both" : "");
    const size_t minK = seed % 2 == 0 ? 1 : 1 + seed % 40;
    expectCounts(made, "", minK, minK + seed % 7 * 20,
                 both ? Strands::kCanonical : Strands::kForward);
    if (both) expectCounts(made, "--no-canonical", minK, minK, Strands::kApart);
    if (HasFailure()) break;
  }
}

// What is not canonical of both strands: each strand's k-mers.
TEST(Pangenome, TellsStrandsApartIfAsked) {
  const MadeCollection made({{"a.fa", {{"x", "GAATTC"}}}}, "--strands both");
  // GAATTC is its own reverse complement.
  EXPECT_EQ(made.expect("pangenome", "--min-k 6 --max-k 6 --table histogram"),
            "k\tgenomes\tkmers\n6\t1\t1\n");
  const auto apart = jsonLines(
      made.expect("pangenome", "--min-k 5 --max-k 5 --json --no-canonical"));
  EXPECT_EQ(apart[0]["total"], 4);
  EXPECT_EQ(apart[0]["distinct"], 2);
  const MadeCollection one({{"a.fa", {{"x", "GAATTC"}}}}, "");
  const Outcome warned = one.run("pangenome", "--max-k 2");
  EXPECT_EQ(warned.status, 0);
  EXPECT_THAT(warned.err, HasSubstr("note: the folder does not hold both"));
  const Outcome refused = one.run("pangenome", "--canonical");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_THAT(refused.err, HasSubstr("--canonical needs both strands"));
}

TEST(Pangenome, ExpectsWhatTheMeanOfAllChoicesIs) {
  for (unsigned seed = 1; seed <= 10; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, 60), "--strands both");
    const auto n = made.genomes();
    const Json line = jsonLines(made.expect(
        "pangenome", "--min-k 4 --max-k 4 --json --quorum 1,0.5"))[0];
    const auto kmers = kmersOf(made, 4, Strands::kCanonical);
    double incidences = 0, entropy = 0, squares = 0;
    for (const auto& [kmer, having] : kmers) {
      incidences += static_cast<double>(having.size());
    }
    for (const auto& [kmer, having] : kmers) {
      const double share = static_cast<double>(having.size()) / incidences;
      entropy -= share * std::log(share);
      squares += share * share;
    }
    if (!kmers.empty()) {
      EXPECT_NEAR(line["hill_1"], std::exp(entropy), 1e-6);
      EXPECT_NEAR(line["hill_2"], 1 / squares, 1e-6);
    }
    for (uint32_t m = 1; m <= n; m++) {
      const int chosen = static_cast<int>(m);
      EXPECT_NEAR(line["growth"][m - 1], expectedCount(kmers, n, chosen, 1),
                  1e-6);
      EXPECT_NEAR(line["core_1"][m - 1],
                  expectedCount(kmers, n, chosen, chosen), 1e-6);
      EXPECT_NEAR(line["core_0.5"][m - 1],
                  expectedCount(kmers, n, chosen, (chosen + 1) / 2), 1e-6);
    }
  }
}

TEST(Pangenome, PrintsTables) {
  const MadeCollection made({{"a.fa", {{"x", "AAAAACA"}}},
                             {"b.fa", {{"y", "AAAAAC"}}},
                             {"c.fa", {{"z", "AAAAATT"}}}},
                            "");
  EXPECT_EQ(made.expect("pangenome", "--min-k 5 --max-k 6 --table histogram"),
            "k\tgenomes\tkmers\n5\t1\t3\n5\t2\t1\n5\t3\t1\n"
            "6\t1\t3\n6\t2\t1\n6\t3\t0\n");
  EXPECT_EQ(
      made.expect("pangenome", "--min-k 5 --max-k 5 --table growth --quorum 1"),
      "k\tgenomes\tdistinct\tcore_1\n5\t1\t2.66666666667\t2.66666666667\n"
      "5\t2\t4\t1.33333333333\n5\t3\t5\t1\n");
  // Genome 2 adds 4/3 of them, and genome 3 adds 1: alpha is log(4/3)/log(3/2).
  EXPECT_THAT(made.expect("pangenome", "--min-k 5 --max-k 5 --quorum 1"),
              HasSubstr("k\ttotal\tdistinct\tunique\tcore_1\talpha\thill_1\t"
                        "hill_2\n5\t8\t5\t3\t1\t0.709511291351\t4.4556"));
}

TEST(Pangenome, TakesGenomesFromATable) {
  const std::vector<SequenceFile> files = {
      {"a.fa", {{"x", "ACCGT"}, {"y", "GATTACA"}}}, {"b.fa", {{"z", "GATTC"}}}};
  const MadeCollection made(files, "--strands both");
  const auto withTable = [&](const std::string& table) {
    return made.run("pangenome",
                    "--min-k 3 --max-k 3 --table histogram --groups " +
                        made.folder().write("groups.tsv", table));
  };
  const auto histogram = [&](const GenomeOf& genomeOf, uint32_t genomes) {
    std::string text = "k\tgenomes\tkmers\n";
    uint32_t i = 0;
    for (const uint64_t n : histogramOf(
             kmersOf(made, 3, Strands::kCanonical, genomeOf), genomes)) {
      text += "3\t" + std::to_string(++i) + "\t" + std::to_string(n) + "\n";
    }
    return text;
  };
  EXPECT_EQ(withTable("# a comment\nx\tone\ny\ttwo\nb.fa\tthree\n").out,
            histogram({{"x", 0}, {"y", 1}, {"z", 2}}, 3));
  EXPECT_EQ(withTable("a.fa\tone\tp\nb.fa\ttwo\ty\r\ny\ttwo\ty").out,
            histogram({{"x", 0}, {"y", 1}, {"z", 1}}, 2));
  const std::pair<const char*, const char*> wrong[] = {
      {"a.fa\tone\n", "no line for record z of "},
      {"a.fa\tone\nb.fa\ttwo\nc.fa\tthree\n",
       "line 3: no file or record is called c.fa"},
      {"a.fa\tone\nb.fa\n", "line 2: too few fields"},
      {"a.fa\tone\nb.fa\t\n", "line 2: an empty name"},
      {"a.fa\tone\tp\tq\nb.fa\ttwo\n", "line 1: too many fields"},
      {"a.fa\tone\na.fa\ttwo\n", "line 2: 'a.fa' has a line already"},
      {"a.fa\tone\tp\nb.fa\tone\tq\n",
       "line 2: genome one is in another group"},
  };
  for (const auto& [table, reason] : wrong) {
    SCOPED_TRACE(table);
    const Outcome run = withTable(table);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, AllOf(HasSubstr("groups.tsv: "), HasSubstr(reason)));
  }
}

}  // namespace
