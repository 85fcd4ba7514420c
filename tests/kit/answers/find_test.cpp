// palvor-kit find through the real programs, against looking at every place.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "kit/answers/made_collection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string line(const Piece& piece, size_t at, size_t size,
                 const std::string& name, const char* strand) {
  const size_t start = piece.offset + at;
  return piece.record + "\t" + std::to_string(start) + "\t" +
         std::to_string(start + size) + "\t" + name + "\t0\t" + strand + "\t" +
         piece.file + "\n";
}

std::string placesOf(const MadeCollection& made, const std::string& name,
                     const std::string& pattern) {
  const std::string reverse = reverseComplementOf(pattern);
  std::string places;
  for (const Piece& piece : made.pieces()) {
    for (size_t at = 0; at + pattern.size() <= piece.text.size(); at++) {
      const std::string there = piece.text.substr(at, pattern.size());
      if (there == pattern) {
        places += line(piece, at, pattern.size(), name, "+");
      } else if (there == reverse) {
        places += line(piece, at, pattern.size(), name, "-");
      }
    }
  }
  return places;
}

// Stretches of the collection, most changed a little or reversed, and others.
std::vector<std::string> randomPatterns(std::mt19937& random,
                                        const MadeCollection& made) {
  std::vector<std::string> patterns = {"A", "C", "AT", "GATC"};
  for (int i = 0; i < 12; i++) {
    const std::string& text =
        made.pieces()[below(random, made.pieces().size())].text;
    const size_t begin = below(random, text.size());
    std::string pattern =
        text.substr(begin, 1 + below(random, text.size() - begin));
    if (i % 3 == 0)
      pattern[below(random, pattern.size())] = "ACGT"[below(random, 4)];
    if (i % 4 == 0) pattern += "ACGT"[below(random, 4)];
    patterns.push_back(i % 2 == 0 ? pattern : reverseComplementOf(pattern));
  }
  return patterns;
}

TEST(Find, FindsEveryPlaceOnBothStrands) {
  for (unsigned seed = 1; seed <= 60; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, seed % 3 == 0 ? 150 : 40),
                              seed % 2 == 0 ? "--strands both" : "");
    std::string fasta, expected =
                           "#chrom\tstart\tend\tname\tscore\tstrand\t"
                           "genome\n";
    std::string counts = "pattern\tcount\tgenomes\n";
    for (const std::string& pattern : randomPatterns(random, made)) {
      const std::string name = fmt::format("p{}", fasta.size());
      fasta += ">" + name + " more\n" + pattern + "\n";
      const std::string places = placesOf(made, name, pattern);
      expected += places;
      std::set<std::string> genomes;
      for (const std::string& place : linesOf(places)) {
        genomes.insert(place.substr(place.rfind('\t')));
      }
      counts += name + "\t" + std::to_string(linesOf(places).size()) + "\t" +
                std::to_string(genomes.size()) + "\n";
    }
    const std::string file = made.folder().write("patterns.fa", fasta);
    EXPECT_EQ(made.expect("find", "-f " + file), expected);
    EXPECT_EQ(made.expect("find", "--count -f " + file), counts);
    if (HasFailure()) break;
  }
}

// What dividers and trees tell is what the merged array tells.
TEST(Find, FindsInTreesWhatItFindsInTheArray) {
  for (unsigned seed = 1; seed <= 12; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, seed % 3 == 0 ? 150 : 40),
                              seed % 2 == 0 ? "--strands both" : "");
    std::string options;
    for (const std::string& pattern : randomPatterns(random, made)) {
      options += pattern + " ";
    }
    const std::string expected = made.expect("find", options);
    for (const std::string& trees :
         {std::string("-n 50 -R"), "-n " + std::to_string(5 + seed)}) {
      std::filesystem::remove_all(made.folder().path("m.ST"));
      made.folder().write("m.ST/placeholder", "");
      std::vector<std::string> merge = {made.folder().path(""), "d", "-q", "-p",
                                        "m"};
      for (const std::string& word : wordsOf(trees)) merge.push_back(word);
      ASSERT_EQ(runPalvor(merge).status, 0);
      EXPECT_TRUE(made.expect("find", options) == expected) << trees;
    }
    if (HasFailure()) break;
  }
}

// Each forged word of a tree or its divider is named, or changes no answer but
// by leaving something out; nothing else comes of it.
TEST(Find, InventsNothingInForgedTrees) {
  std::mt19937 random(3);
  const MadeCollection made(
      {{"a.fa", {{"x", "GATTACAGATTACAGGATTACA"}}}, {"b.fa", {{"y", "GATTA"}}}},
      "", "-n 40");
  const std::string options = "A GA GATTACA ACAG CCC T";
  std::multiset<std::string> right;
  for (const std::string& line : linesOf(made.expect("find", options))) {
    right.insert(line);
  }
  EXPECT_GT(right.size(), 20);
  const std::vector<uint32_t> values = {0,  1,  2,  4,          5,         8,
                                        12, 44, 59, 0x7FFFFFFC, 0xFFFFFFFF};
  const std::string tree = "m.ST/m_0.stree", dividers = "m.ST/m.stdiv";
  for (const std::string& name : {tree, dividers}) {
    const std::string bytes = made.folder().read(name);
    for (size_t word = 0; word < bytes.size() / 4; word++) {
      const uint32_t value = values[random() % values.size()];
      std::string forged = bytes;
      std::memcpy(forged.data() + 4 * word, &value, 4);
      made.folder().write(name, forged);
      const Outcome run = made.run("find", options);
      ASSERT_LE(run.status, 1) << name << " " << word << " " << value;
      if (run.status == 1) {
        EXPECT_THAT(run.err, testing::AnyOf(HasSubstr(".stree: "),
                                            HasSubstr("m.stdiv: ")));
      }
      for (const std::string& line : linesOf(run.out)) {
        EXPECT_EQ(right.count(line), 1) << line;
      }
    }
    made.folder().write(name, bytes);
  }
  made.folder().write(tree, made.folder().read(tree).substr(12));
  EXPECT_THAT(made.run("find", "GA").err, HasSubstr("by its divider"));
  made.folder().write(dividers, made.folder().read(dividers).substr(24));
  EXPECT_EQ(made.run("find", "GA").status, 1);
  const std::string query = made.folder().write("q.fa", ">q\nGATT\n");
  EXPECT_THAT(made.run("find", "--mem 3 -f " + query).err,
              HasSubstr("m.stpsa: not there; palvor -a writes it"));
}

TEST(Find, CountsByGenomeAndPrintsJson) {
  const MadeCollection made({{"a.fa", {{"x", "GATTACA"}, {"y", "AATC"}}},
                             {"b.fa", {{"z", "CCC"}}},
                             {"c.fa", {{"w", "TGATTG"}}}},
                            "--strands both");
  const std::string a = made.folder().path("a.fa");
  const std::string c = made.folder().path("c.fa");
  EXPECT_EQ(made.expect("find", "gatt AUUG GGG --genomes"),
            "pattern\tgenome\tcount\ngatt\t" + a + "\t2\ngatt\t" + c +
                "\t1\nAUUG\t" + c + "\t1\nGGG\t" + made.folder().path("b.fa") +
                "\t1\n");
  EXPECT_EQ(
      made.expect("find", "AATC --json"),
      "{\"chrom\":\"x\",\"start\":0,\"end\":4,\"name\":\"AATC\",\"score\":"
      "0,\"strand\":\"-\",\"genome\":\"" +
          a +
          "\"}\n{\"chrom\":\"y\",\"start\":0,\"end\":4,\"name\":\"AATC\","
          "\"score\":0,\"strand\":\"+\",\"genome\":\"" +
          a +
          "\"}\n{\"chrom\":\"w\",\"start\":1,\"end\":5,\"name\":\"AATC\","
          "\"score\":0,\"strand\":\"-\",\"genome\":\"" +
          c + "\"}\n");
  EXPECT_EQ(made.expect("find", "CCCC --count --json"),
            "{\"pattern\":\"CCCC\",\"count\":0,\"genomes\":0}\n");
}

TEST(Find, RefusesLettersThatAreNoBases) {
  const MadeCollection made({{"a.fa", {{"x", "GATTACA"}}}}, "");
  const auto expectError = [&](const std::string& options,
                               const std::string& reason) {
    SCOPED_TRACE(options);
    const Outcome run = made.run("find", options);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr(reason));
  };
  expectError("GATNACA", "pattern GATNACA: 'N' stands for several bases");
  expectError("GAT raA", "pattern raA: 'r' stands for several bases");
  expectError("GA-T", "pattern GA-T: '-' is no base");
  expectError("", "no pattern, and no file of them (-f)");
  expectError("GA --mem 20", "--mem is for the sequences of a file");
  expectError("-f " + made.folder().write("p.fa", ">p\nGAT\nGAy\n"),
              "p.fa: pattern p: 'y' stands for several bases");
  expectError("-f " + made.folder().write("q.fa", ">q\n>r\nGAT\n"),
              "q.fa: pattern q is empty");
  expectError("-f " + made.folder().path("none.fa"), "none.fa");
}

// Records that are not those of the inputs are met on the way.
TEST(Find, RefusesArraysOfOtherInputs) {
  const MadeCollection made({{"a.fa", {{"x", "GATTACA"}}}}, "");
  const MadeCollection other({{"a.fa", {{"x", "CCCCTAC"}}}}, "");
  made.folder().write("m.ST/m.stpsa", other.folder().read("m.ST/m.stpsa"));
  EXPECT_THAT(made.run("find", "TAC").err,
              HasSubstr("m.stpsa: record 6: its prefix words are not those"));
  made.folder().write("m.ST/m.stpsa", std::string(16 * 7, '\xFF'));
  EXPECT_THAT(made.run("find", "TAC").err,
              HasSubstr("m.stpsa: record 3: there is no suffix"));
  // A suffix that begins with A and one that begins with C changed places.
  const MadeCollection tandem({{"a.fa", {{"x", "ACACACAC"}}}}, "");
  std::string array = tandem.folder().read("m.ST/m.stpsa");
  std::swap_ranges(&array[16 * 1], &array[16 * 2], &array[16 * 5]);
  tandem.folder().write("m.ST/m.stpsa", array);
  EXPECT_THAT(tandem.run("find", "A").err,
              HasSubstr("m.stpsa: record 1: not in ascending order"));
  made.folder().write("m.ST/m.stpsa", std::string(16 * 6, '\0'));
  EXPECT_THAT(made.run("find", "TAC").err,
              HasSubstr("m.stpsa: 6 records, expected 7"));
}

using Match = std::tuple<uint64_t, std::string, uint64_t, uint64_t>;

// Of one direction of a query, in its stretches without N.
std::multiset<Match> matchesOf(const MadeCollection& made,
                               const std::string& query, size_t shortest) {
  std::multiset<Match> matches;
  for (const Piece& piece : made.pieces()) {
    const std::string& text = piece.text;
    for (size_t q = 0; q < query.size(); q++) {
      for (size_t t = 0; t < text.size(); t++) {
        if (q > 0 && t > 0 && query[q - 1] == text[t - 1]) continue;
        size_t length = 0;
        while (q + length < query.size() && t + length < text.size() &&
               query[q + length] == text[t + length]) {
          length++;
        }
        if (length >= shortest) {
          matches.insert({q + 1, piece.record, piece.offset + t + 1, length});
        }
      }
    }
  }
  return matches;
}

std::string reversedWithN(const std::string& text) {
  std::string result;
  for (auto c = text.rbegin(); c != text.rend(); ++c) {
    result += *c == 'N' ? "N" : reverseComplementOf(std::string(1, *c));
  }
  return result;
}

TEST(Find, FindsMaximalExactMatches) {
  for (unsigned seed = 1; seed <= 40; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, 100),
                              seed % 2 == 0 ? "--strands both" : "");
    const std::string query = randomFiles(random, 80)[0].records[0].text + "N" +
                              made.pieces()[0].text.substr(1) + "AC";
    const size_t shortest = 1 + seed % 40;
    const std::string out = made.expect(
        "find", "--mem " + std::to_string(shortest) + " -f " +
                    made.folder().write("q.fa", ">q\n" + query + "\n"));
    std::vector<std::multiset<Match>> found;
    for (const std::string& line : linesOf(out)) {
      const auto words = wordsOf(line);
      if (words[0] == ">") {
        EXPECT_EQ(line, found.empty() ? "> q" : "> q Reverse");
        found.emplace_back();
      } else {
        found.back().insert({std::stoull(words[2]), words[0],
                             std::stoull(words[1]), std::stoull(words[3])});
      }
    }
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0], matchesOf(made, query, shortest));
    EXPECT_EQ(found[1], matchesOf(made, reversedWithN(query), shortest));
    if (HasFailure()) break;
  }
}

}  // namespace
