// palvor-kit report through the real programs: the numbers in its page are
// those that the other commands tell, which are tested by themselves. What a
// browser makes of the page is looked at by report_page.py.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "kit/answers/made_collection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using Json = nlohmann::json;

size_t countOf(const std::string& text, const std::string& word) {
  size_t count = 0;
  for (size_t at = text.find(word); at != std::string::npos;
       at = text.find(word, at + 1)) {
    count++;
  }
  return count;
}

// What a page has for its script.
Json factsOf(const std::string& page) {
  const std::string begin = "<script type=\"application/json\" id=\"facts\">";
  const size_t from = page.find(begin) + begin.size();
  return Json::parse(page.substr(from, page.find("</script>", from) - from));
}

std::string pageOf(const MadeCollection& made, const std::string& options) {
  const auto paths = linesOf(made.expect("report", options));
  EXPECT_EQ(paths, (std::vector<std::string>{
                       made.folder().path("m.ST/m.report.html"),
                       made.folder().path("m.ST/m.report_mqc.json")}));
  return made.folder().read("m.ST/m.report.html");
}

// The common prefixes of all neighbours, by the bins of the page.
void expectPrefixes(const MadeCollection& made, const Json& lcp) {
  const std::string bytes = made.folder().read("m.ST/m.stlcp");
  std::vector<uint64_t> pairs(lcp["bins"].size());
  uint64_t sum = 0, longest = 0, count = 0;
  for (size_t i = 4; i + 4 <= bytes.size(); i += 4) {
    uint64_t entry = 0;
    for (size_t b = 4; b > 0; b--) {
      entry = entry << 8 | static_cast<unsigned char>(bytes[i + b - 1]);
    }
    const uint64_t characters = entry >> 2;
    size_t bin = 0;
    while (bin + 1 < pairs.size() &&
           lcp["bins"][bin + 1]["from"].get<uint64_t>() <= characters) {
      bin++;
    }
    pairs.at(bin)++;
    sum += characters;
    count++;
    longest = std::max(longest, characters);
  }
  for (size_t bin = 0; bin < pairs.size(); bin++) {
    EXPECT_EQ(lcp["bins"][bin]["pairs"], pairs[bin]);
    const uint64_t from = bin < 2        ? bin
                          : bin % 2 == 0 ? 1ULL << bin / 2
                                         : 3ULL << bin / 2 >> 1;
    EXPECT_EQ(lcp["bins"][bin]["from"], from);
  }
  EXPECT_EQ(lcp["longest"], longest);
  EXPECT_NEAR(
      lcp["mean"],
      count == 0 ? 0 : static_cast<double>(sum) / static_cast<double>(count),
      1e-9);
}

TEST(Report, TellsWhatTheOtherCommandsTell) {
  for (unsigned seed = 1; seed <= 12; seed++) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const MadeCollection made(randomFiles(random, 80),
                              seed % 3 == 0 ? "" : "--strands both");
    const Json facts = factsOf(pageOf(made, "--min-k 2 --max-k 30 --kmer 5"));
    const auto lines = linesOf(made.expect(
        "pangenome", "--min-k 2 --max-k 30 --json --quorum 1,0.95"));
    ASSERT_EQ(facts["k"].size(), lines.size());
    for (size_t i = 0; i < lines.size(); i++) {
      const Json line = Json::parse(lines[i]);
      const Json& row = facts["k"][i];
      EXPECT_EQ(row["histogram"], line["histogram"]);
      EXPECT_EQ(row["total"], line["total"]);
      for (size_t m = 0; m < made.genomes(); m++) {
        const auto near = [](double a, double b) {
          EXPECT_NEAR(a, b, 1e-6 * (1 + b));
        };
        near(row["growth"][m], line["growth"][m]);
        near(row["cores"][0][m], line["core_1"][m]);
        near(row["cores"][1][m], line["core_0.95"][m]);
      }
      EXPECT_EQ(row["alpha"].is_null(), !line.contains("alpha"));
    }
    for (const std::string& text :
         linesOf(made.expect("distance", "--kmer 5 --json"))) {
      const Json line = Json::parse(text);
      size_t a = 0, b = 0;
      for (size_t g = 0; g < made.genomes(); g++) {
        if (facts["genomes"][g]["name"] == line["a"]) a = g;
        if (facts["genomes"][g]["name"] == line["b"]) b = g;
      }
      EXPECT_NEAR(facts["distances"]["matrix"][a][b], line["mash"], 1e-6);
      EXPECT_EQ(facts["distances"]["matrix"][a][b],
                facts["distances"]["matrix"][b][a]);
    }
    uint64_t characters = 0;
    for (const Piece& piece : made.pieces()) characters += piece.text.size();
    for (const Json& genome : facts["genomes"]) {
      characters -= genome["characters"].get<uint64_t>();
    }
    EXPECT_EQ(characters, 0u);
    expectPrefixes(made, facts["lcp"]);
    if (HasFailure()) break;
  }
}

TEST(Report, LetsNoNameBecomeCode) {
  const MadeCollection made(
      {{"<b>&'\".fa", {{"x", "ACGTACGATCGA"}}}, {"b.fa", {{"y", "ACGTT"}}}},
      "");
  const std::string name = "</script><script>alert(1)</script><!--&\"'";
  const std::string table = made.folder().write(
      "groups.tsv", "x\t" + name + "\t/*FACTS*/\ny\t\xff\t<i>\n");
  const std::string plain = pageOf(made, "");
  const std::string page = pageOf(made, "--groups " + table);
  EXPECT_EQ(countOf(page, "<script"), countOf(plain, "<script"));
  EXPECT_EQ(countOf(page, "</script"), 2u);
  EXPECT_EQ(countOf(page, "<!--"), 0u);
  const Json facts = factsOf(page);
  EXPECT_EQ(facts["genomes"][0]["name"], name);
  EXPECT_EQ(facts["genomes"][0]["group"], "/*FACTS*/");
  EXPECT_EQ(facts["genomes"][1]["name"], "\xEF\xBF\xBD");
  EXPECT_THAT(page, AllOf(HasSubstr("default-src 'none'"),
                          Not(HasSubstr("http-equiv=\"refresh")),
                          Not(HasSubstr("innerHTML"))));
  const Json multiqc =
      Json::parse(made.folder().read("m.ST/m.report_mqc.json"));
  EXPECT_EQ(multiqc["plot_type"], "table");
  EXPECT_EQ(multiqc["data"]["&lt;/script&gt;&lt;script&gt;alert(1)&lt;/script"
                            "&gt;&lt;!--&amp;&quot;&#39;"]["characters"],
            12);
}

TEST(Report, ReadsWhatIsKnownOfTheRun) {
  const MadeCollection made({{"a.fa", {{"x", "ACGTACGATCGA"}}}}, "");
  const std::string log = made.folder().write(
      "log",
      "# total length = 12, max input size = 12, number of inputs = 1, number "
      "of parts = 1\n# Merge done: 12, 0 STs, tnp2=1 tlcmp=2 tncmp=3 "
      "tnrc=1/2 tnac=3\n# Palvor: mem 4096 bytes, 0 PFs, real 1500 ms, lcp 0 "
      "ms, r/w 1/2 ms, time 250 ms\n\tUser time (seconds): 0.25\n"
      "\tElapsed (wall clock) time (h:mm:ss or m:ss): 1:02.50\n"
      "\tMaximum resident set size (kbytes): 10\n# Palvor: mem x, real 1e999 "
      "ms");
  const Json run = factsOf(pageOf(made, "--log " + log))["run"];
  const auto valueOf = [&](const std::string& name) {
    for (const Json& figure : run) {
      if (figure["name"] == name) return figure["value"].get<double>();
    }
    return -1.0;
  };
  EXPECT_EQ(valueOf("memory asked for"), 4096);
  EXPECT_EQ(valueOf("wall time of the merge"), 1.5);
  EXPECT_EQ(valueOf("processor time of the merge"), 0.25);
  EXPECT_EQ(valueOf("suffixes merged"), 12);
  EXPECT_EQ(valueOf("user time"), 0.25);
  EXPECT_EQ(valueOf("wall time"), 62.5);
  EXPECT_EQ(valueOf("peak memory"), 10240);
  const std::string nothing = made.folder().write("nothing", "real 1 ms\n");
  const Outcome refused = made.run("report", "--log " + nothing);
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr(nothing + ": no line of palvor"));
}

TEST(Report, WritesWhereItIsTold) {
  const MadeCollection made({{"a.fa", {{"x", "ACGT"}}}}, "");
  const std::string page = made.folder().path("own.html");
  EXPECT_EQ(made.expect("report", "--page " + page),
            page + "\n" + made.folder().path("own_mqc.json") + "\n");
  EXPECT_EQ(
      made.run("report", "--page " + made.folder().path("no/own.html")).status,
      1);
  EXPECT_EQ(made.run("report", "--min-k 9 --max-k 8").status, 1);

  const std::string pipe = made.folder().path("pipe");
  ASSERT_EQ(runShell("mkfifo " + pipe).status, 0);
  EXPECT_THAT(made.run("report", "--page " + pipe).err,
              HasSubstr(pipe + ": is there, and no regular file"));
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));

  const std::string link = made.folder().path("link");
  const std::string target = made.folder().write("target", "");
  ASSERT_EQ(runShell("ln -s " + target + " " + link).status, 0);
  made.expect("report", "--page " + link);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(made.folder().read("target"), made.folder().read("own.html"));
}

}  // namespace
