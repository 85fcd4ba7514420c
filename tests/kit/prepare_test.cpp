// palvor-kit prepare through the real program: what is in the folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/data_folder.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

using Files = std::map<std::string, std::string>;
using Arguments = std::vector<std::string>;

class Prepare : public testing::Test {
 protected:
  // With these files, and with options parted by blanks.
  Outcome prepare(const Arguments& files, const std::string& options = "",
                  const Setting& setting = {}) {
    Arguments all = {"prepare", "-o", folder_.path("out"), "-p", "x"};
    for (const Arguments& more : {wordsOf(options), files}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    return runKit(all, setting);
  }

  Files files() const { return folder_.files("out/x.ST"); }

  TemporaryFolder folder_;
};

TEST_F(Prepare, WritesTheseBytes) {
  const std::string a = folder_.write("a.fa", ">x\nGATTC\n");
  const std::string b = folder_.write("b\t\\.fa", ">y z\nAC\nNA\n");
  const Outcome outcome = prepare({a, b}, "--lcp");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "palvor " + folder_.path("out/") + " x -p x-array -a -l -Z\n");

  const std::string root = folder_.path("");
  const Files want = {
      {"x.stlengths", bytesOf({5, 2, 1})},
      {"x.stblengths", bytesOf({10, 4, 2})},
      {"x.stplengths", bytesOf({1, 2})},
      {"x.inputs.tsv", "0\t0\t" + root + "a.fa\tx\t0\t5\t+\n" +  //
                           "1\t1\t" + root + "b\\t\\\\.fa\ty\t0\t2\t+\n" +
                           "2\t1\t" + root + "b\\t\\\\.fa\ty\t3\t1\t+\n"},
      {"x_0.stbin", bytesOf({0x8F400000, 0})},
      {"x_1.stbin", bytesOf({0x10000000, 0})},
      {"x_2.stbin", bytesOf({0, 0})},
      // ATTC, C, GATTC, TC, TTC
      {"x_0.stpsa",
       bytesOf({0, 1, 0x3D000000, 0, 0, 4, 0x40000000, 0, 0, 0, 0x8F400000, 0,
                0, 3, 0xD0000000, 0, 0, 2, 0xF4000000, 0})},
      {"x_0.stlcp", bytesOf({0, 3, 1, 3, 5})},
      // A, AC, C
      {"x_1.stpsa", bytesOf({2 << 2, 0, 0, 0, 1 << 2, 0, 0x10000000, 0,  //
                             1 << 2, 1, 0x40000000, 0})},
      {"x_1.stlcp", bytesOf({0, 4, 3})},
  };
  Files found = files();
  found.erase("x.manifest.tsv");  // below
  EXPECT_EQ(found, want);
}

TEST_F(Prepare, CountsInputsFromZeroInEachArrayWhenTold) {
  const std::string a = folder_.write("a", ">x\nC\n");
  const std::string b = folder_.write("b", ">y\nG\n>z\nA\n");
  EXPECT_EQ(prepare({a, b, b}, "--zero-origin").out,
            "palvor " + folder_.path("out/") + " x -p x-array -a -l -z\n");
  Files found = files();
  EXPECT_EQ(found["x.stplengths"], bytesOf({1, 2, 2}));
  EXPECT_EQ(found["x_1.stpsa"],
            bytesOf({1 << 2, 0, 0, 0, 0, 0, 0x80000000, 0}));
  EXPECT_EQ(found["x_2.stpsa"], found["x_1.stpsa"]);
}

// Which inputs come of which records, and what is said of the rest.
TEST_F(Prepare, MakesInputsOfRecords) {
  const std::string a = folder_.write("a", ">one\nnnACG-TT\nTNNN\n>two\nGG\n");
  const std::string b = folder_.write("b", ">n\nNNN\n>e\n");
  const std::string c = folder_.write("c", "");
  const std::string d = folder_.write("d", ">x\nCC\nCC\n>y\nRTR\n");
  struct Row {
    std::string options;
    std::string inputs;  // array:record@offset+length
    bool partitions;     // whether there is a partitions file
    std::vector<std::string> said;
  };
  for (const Row& row : {
           Row{"--ambiguous split",
               " 0:one@2+3 0:one@6+3 0:two@0+2 1:x@0+4 1:y@1+1",
               true,
               {"4 files, 6 records, 5 inputs, 13 characters",
                "11 ambiguous characters (not A, C, G or T) found: 1 -, 8 N, "
                "2 R",
                "1 inputs begun anew", "2 records wi", "2 files gave no"}},
           Row{"--ambiguous skip-record",
               " 0:two@0+2 1:x@0+4",
               false,
               {"3 records with ambiguous", "1 records without any"}},
           Row{"--psa-per record",
               " 0:one@2+3 0:one@6+3 1:two@0+2 2:x@0+4 3:y@1+1",
               true,
               {}},
       }) {
    SCOPED_TRACE(row.options);
    const Outcome outcome = prepare({a, b, c, d}, "--force " + row.options);
    EXPECT_EQ(outcome.status, 0);
    for (const std::string& said : row.said) {
      EXPECT_THAT(outcome.err, HasSubstr("palvor-kit: " + said));
    }
    std::string inputs;
    for (const std::string& line : linesOf(files()["x.inputs.tsv"])) {
      const auto field = wordsOf(line);
      inputs +=
          " " + field[1] + ":" + field[3] + "@" + field[4] + "+" + field[5];
      EXPECT_EQ(field.at(6), "+");
    }
    EXPECT_EQ(inputs, row.inputs);
    EXPECT_EQ(files().count("x.stplengths"), row.partitions);
  }
  EXPECT_EQ(files()["x_1.stbin"], bytesOf({0xFC000000, 0}));  // TTT
}

// Each input by its own reverse complement, in the array of its file; lengths
// around those of whole words.
TEST_F(Prepare, AddsTheOtherStrand) {
  const std::string text = "GATTACACCTGAGTTTACGCATCGGGACTAAACCGTTTGACA";
  const auto pairOf = [](char c) {
    return c == 'A' ? 'T' : c == 'C' ? 'G' : c == 'G' ? 'C' : 'A';
  };
  std::string fasta, plain;
  for (const size_t length : {1u, 2u, 15u, 16u, 17u, 31u, 32u, 33u, 42u}) {
    const std::string input = text.substr(0, length);
    std::string other(input.rbegin(), input.rend());
    std::transform(other.begin(), other.end(), other.begin(), pairOf);
    fasta.append(">").append(std::to_string(length)).append("\n");
    fasta.append(input).append("\n");
    plain.append(">x\n").append(input).append("\n>y\n");
    plain.append(other).append("\n");
  }
  fasta += ">split\nACCNNGT\n";
  plain += ">p\nACC\n>p\nGGT\n>p\nGT\n>p\nAC\n";
  const Outcome outcome =
      prepare({folder_.write("a", fasta)}, "--lcp --strands both");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("palvor-kit: 1 inputs begun anew"));
  Files both = files();
  const std::string table = both["x.inputs.tsv"];
  const std::string root = folder_.path("");
  EXPECT_THAT(table, HasSubstr("17\t0\t" + root + "a\t42\t0\t42\t-\n18\t0\t" +
                               root + "a\tsplit\t0\t3\t+\n19\t0\t" + root +
                               "a\tsplit\t0\t3\t-\n20\t0\t" + root +
                               "a\tsplit\t5\t2\t+\n"));
  ASSERT_EQ(prepare({folder_.write("b", plain)}, "--lcp --force").status, 0);
  Files want = files();
  for (const char* name : {"x.inputs.tsv", "x.manifest.tsv"}) {
    both.erase(name);
    want.erase(name);
  }
  EXPECT_EQ(both, want);

  // A record that is left out takes its other strand with it.
  ASSERT_EQ(prepare({folder_.write("c", ">x\nAC\nN\n>y\nGGC\n")},
                    "--force --strands both --ambiguous skip-record")
                .status,
            0);
  EXPECT_EQ(files()["x.stlengths"], bytesOf({3, 3}));
  EXPECT_EQ(files()["x_1.stbin"], bytesOf({0x94000000, 0}));  // GCC
}

TEST_F(Prepare, ReadsStandardInput) {
  EXPECT_EQ(prepare({"-"}, "", {.input = ">x\nACGT\n"}).status, 0);
  EXPECT_EQ(files()["x.inputs.tsv"], "0\t0\t-\tx\t0\t4\t+\n");
}

TEST_F(Prepare, WritesTheSameForAnyNumberOfJobs) {
  const std::string genomes = folder_.path("g");
  runKit(wordsOf("simulate --genomes 7 --length 3000 --divergence 0.02 -o " +
                 genomes));
  Arguments inputs = {
      folder_.write("n", ">a\nACGTNNNACCA\n>b\nN\n>c\nTTNTT\n>d\nG\n")};
  for (const auto& [name, bytes] : folder_.files("g")) {
    inputs.push_back(genomes + "/" + name);
  }
  ASSERT_EQ(inputs.size(), 8u);
  for (const std::string per : {"file", "record"}) {
    Files first;
    for (const std::string jobs : {"1", "2", "5"}) {
      const Outcome outcome =
          prepare(inputs, "--lcp --force -j " + jobs + " --psa-per " + per);
      ASSERT_EQ(outcome.status, 0) << outcome.err;
      if (first.empty()) first = files();
      EXPECT_EQ(files(), first) << jobs << " jobs, one array per " << per;
    }
  }
}

// The threads of `trace` that wrote into suffix arrays.
std::set<std::string> writersIn(const std::string& trace) {
  std::set<std::string> threads;
  for (const std::string& line : linesOf(trace)) {
    if (line.find(" pwrite64(") == std::string::npos) continue;
    threads.insert(line.substr(0, line.find(' ')));
  }
  return threads;
}

TEST_F(Prepare, SharesOneArrayOutAmongThreads) {
  const std::string genome = folder_.path("g");
  runKit(wordsOf("simulate --genomes 1 --length 1000000 --divergence 0 -o " +
                 genome));
  const std::string trace = folder_.path("trace");
  const Outcome traced =
      prepare({genome + "/genome_0.fa"}, "-j 2",
              {.under = {"strace", "-f", "-e", "trace=pwrite64", "-o", trace,
                         // Leaks cannot be looked for in a traced program.
                         "-E", "ASAN_OPTIONS=detect_leaks=0"}});
  const std::set<std::string> writers = writersIn(folder_.read("trace"));
  if (writers.empty()) GTEST_SKIP() << "system calls cannot be traced here";
  EXPECT_EQ(traced.status, 0) << traced.err;
  EXPECT_EQ(writers.size(), 2u);
}

TEST_F(Prepare, WritesTheSameInLessMemory) {
  const std::string genome = folder_.path("g");
  runKit(wordsOf("simulate --genomes 1 --length 3000000 --divergence 0 -o " +
                 genome));
  const Arguments input = {genome + "/genome_0.fa"};
  const Outcome all = prepare(input, "--lcp");
  ASSERT_EQ(all.status, 0) << all.err;
  EXPECT_THAT(all.err, HasSubstr("palvor-kit: about 3.0 million characters: 61 "
                                 "MB on disk, 37 MB of memory\n"));
  const Files want = files();
  // Positions of a third of the text.
  const Outcome some = prepare(input, "--lcp --force --memory 16M");
  ASSERT_EQ(some.status, 0) << some.err;
  EXPECT_THAT(some.err, HasSubstr(" 17 MB of memory\n"));
  EXPECT_EQ(files(), want);
}

// The command that is printed, run as printed, must give what is right.
TEST_F(Prepare, PrintsTheCommandThatMerges) {
  const std::string gattaca = "GATTACAGATTACAGATTACAGATTACAGATTACATT";
  const std::string a =
      folder_.write("a", ">0\n" + gattaca + "T\n>1\nACAN" + gattaca +
                             "C\n>3\n" + gattaca + "T\n");
  const std::string b =
      folder_.write("b", ">4\n" + std::string(50, 'C') + "\n>5\nTTACATTT\n");
  const std::string spaced = folder_.path("it's spaced/");
  for (const std::string per : {"file", "record"}) {
    for (const std::string options :
         {"", " --lcp", " --zero-origin", " --lcp --zero-origin"}) {
      Arguments arguments =
          wordsOf("prepare --force --psa-per " + per + options);
      arguments.insert(arguments.end(), {"-o", spaced, "-p", "x y", a, b});
      const Outcome made = runKit(arguments);
      ASSERT_EQ(made.status, 0) << made.err;
      const Outcome merged = runShell(linesOf(made.out).back());
      ASSERT_EQ(merged.status, 0) << made.out << merged.err;
      Arguments proof = {"check", spaced, "x y", "-p", "x y-array"};
      if (options.ends_with("--zero-origin")) proof.push_back("-z");
      EXPECT_THAT(runKit(proof).out, StartsWith("all right: 6 inputs, "))
          << made.out;
    }
  }
}

// The manifest names the files with their checksums, and a run that did not
// come to its end is resumed: what stands is not made again, and all else is.
TEST_F(Prepare, ResumesWhatWasInterrupted) {
  Arguments inputs;
  for (const std::string name : {"a", "b", "c"}) {
    inputs.push_back(folder_.write(name, ">" + name + "\nGATTACA\n>y\nGG" +
                                             std::string(name == "b", 'T') +
                                             "\n"));
  }
  ASSERT_EQ(prepare(inputs, "--lcp").status, 0);
  const Files want = files();
  const auto lines = linesOf(want.at("x.manifest.tsv"));
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_THAT(lines[0],
              StartsWith("options\tpsa-per file, forward, split, lcp"));
  const auto fields = wordsOf(lines[1]);
  EXPECT_EQ(fields.at(0), "x_0.stlcp");
  EXPECT_EQ(fields.at(1), "36");
  EXPECT_EQ(fields.at(4), inputs[0]);

  const auto interrupt = [&] {
    for (const char* name : {"x.stlengths", "x.stblengths", "x.inputs.tsv"}) {
      std::filesystem::remove(folder_.path(std::string("out/x.ST/") + name));
    }
  };
  const auto resume = [&](const std::string& stood) {
    const Outcome outcome = prepare(inputs, "--lcp");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(stood + " suffix arrays of an"));
    EXPECT_EQ(files(), want);
  };
  interrupt();
  folder_.write("out/x.ST/x_7.stpsa.part", "begun");
  const auto written =
      std::filesystem::last_write_time(folder_.path("out/x.ST/x_1.stpsa"));
  resume("3");
  EXPECT_EQ(written, std::filesystem::last_write_time(
                         folder_.path("out/x.ST/x_1.stpsa")));
  // A byte changed, a file gone, a line of the manifest cut short.
  interrupt();
  std::string damaged = want.at("x_0.stpsa");
  damaged[20] ^= 1;
  folder_.write("out/x.ST/x_0.stpsa", damaged);
  std::filesystem::remove(folder_.path("out/x.ST/x_1.stlcp"));
  resume("1");
  interrupt();
  const std::string& manifest = want.at("x.manifest.tsv");
  folder_.write("out/x.ST/x.manifest.tsv",
                manifest.substr(0, manifest.size() - 9));
  resume("2");

  // Other text in the same files, of which there comes an array less.
  interrupt();
  folder_.write("b", "");
  const Outcome other = prepare(inputs, "--lcp");
  ASSERT_EQ(other.status, 0) << other.err;
  EXPECT_THAT(other.err, HasSubstr("1 suffix arrays of an"));
  const Files found = files();
  ASSERT_EQ(prepare(inputs, "--lcp --force").status, 0);
  EXPECT_EQ(found, files());
  EXPECT_EQ(found.count("x_2.stpsa"), 0u);
}

TEST_F(Prepare, RefusesAFolderWithDataUnlessForced) {
  const std::string a = folder_.write("a", ">x\nACGT\n");
  const auto expectRefusal = [&](const std::string& reason) {
    const Files before = files();
    const Outcome refused = prepare({a});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr(reason));
    EXPECT_EQ(files(), before);
  };
  ASSERT_EQ(prepare({folder_.write("b", ">y\nGGTT\n>z\nC\n")}).status, 0);
  // Files of others, though they begin alike, are nobody's to remove.
  const std::string others[] = {"x_notes.stuff", "x.st", "xx.stlengths",
                                "x_1.stbin.old", "y_0.stbin"};
  for (const std::string& other : others) {
    folder_.write("out/x.ST/" + other, "mine");
  }
  for (const std::string own :
       {"x.stpsa", "x.stdiv", "x_12.stree", "x_9.stpsa.part"}) {
    folder_.write("out/x.ST/" + own, "old");
  }
  expectRefusal("--force");
  // So it is left by a run that was killed, of another file or other options.
  std::filesystem::remove(folder_.path("out/x.ST/x.stlengths"));
  expectRefusal("did not finish");
  EXPECT_EQ(prepare({folder_.path("b")}, "--lcp").status, 1);

  ASSERT_EQ(prepare({a}, "--force").status, 0);
  Files after = files();
  for (const std::string& other : others) EXPECT_EQ(after.erase(other), 1u);
  EXPECT_EQ(after.size(), 6u);
  EXPECT_EQ(after["x.stlengths"], bytesOf({4}));
}

}  // namespace
