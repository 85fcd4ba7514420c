// palvor-kit build, add and status through the real programs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Files = std::map<std::string, std::string>;

class Build : public testing::Test {
 protected:
  Build() {
    std::mt19937 random(16);
    std::string text;
    for (int i = 0; i < 3000; i++) text += "ACGT"[random() % 4];
    for (const char* name : {"a.fa", "b.fa", "c.fa"}) {
      for (int i = 0; i < 30; i++) text[random() % text.size()] = 'A';
      folder_.write(name, std::string(">") + name + " one\n" +
                              text.substr(0, 2000) + "NN" + text.substr(2000) +
                              "\n>two\n" + text.substr(100, 90) + "\n");
    }
  }

  std::string path(const std::string& name) const { return folder_.path(name); }

  // Words of a command, in which a.fa and so on, and R and its like, are files
  // of the test's.
  std::vector<std::string> words(const std::string& line) const {
    std::vector<std::string> words = wordsOf(line);
    for (size_t i = 1; i < words.size(); i++) {
      const std::string& word = words[i];
      const bool isFolder = word[0] >= 'A' && word[0] <= 'Z' &&
                            (word.size() == 1 || word[1] == '/');
      if (isFolder || word.ends_with(".fa")) {
        words[i] = path(word);
      }
    }
    return words;
  }

  Outcome run(const std::string& line, const Setting& setting = {}) const {
    return runKit(words(line), setting);
  }

  Outcome succeed(const std::string& line) const {
    const Outcome outcome = run(line);
    EXPECT_EQ(outcome.status, 0) << line << "\n" << outcome.err;
    return outcome;
  }

  // The message of a command that must fail.
  std::string failure(const std::string& line,
                      const Setting& setting = {}) const {
    const Outcome outcome = run(line, setting);
    EXPECT_EQ(outcome.status, 1) << line << "\n" << outcome.err;
    return outcome.err;
  }

  Files data(const std::string& result) const {
    return folder_.files(result + "/data.ST");
  }

  json manifest(const std::string& result) const {
    return json::parse(folder_.read(result + "/manifest.json"));
  }

  // Leaves R.part as a run does that found no room for the merged array.
  void leavePart(const std::string& line) const {
    ASSERT_THAT(failure(line, {.fileSize = 100'000}),
                AllOf(HasSubstr("data.stpsa"), HasSubstr("too large"),
                      HasSubstr("R.part keeps what is done")));
  }

  TemporaryFolder folder_;
};

TEST_F(Build, MakesWhatItsPartsMake) {
  const Outcome made = succeed("build -o R -j 2 a.fa b.fa c.fa");
  EXPECT_THAT(made.out, AllOf(HasSubstr("3 genomes, 9270 suffixes, proved"),
                              HasSubstr("next: palvor-kit find")));
  succeed("prepare -o D -p data a.fa b.fa c.fa");
  ASSERT_EQ(runPalvor({path("D") + "/", "data", "-a", "-l", "-q"}).status, 0);
  EXPECT_EQ(data("R"), data("D"));

  const json found = manifest("R");
  EXPECT_EQ(found["inputs"][1]["file"], path("b.fa"));
  EXPECT_EQ(found["inputs"][1]["records"], 2);
  EXPECT_EQ(found["inputs"][1]["strings"], 3);
  EXPECT_EQ(found["inputs"][1]["characters"], 3090);
  EXPECT_EQ(found["outputs"].size(), data("R").size());
  EXPECT_THAT(std::string(found["checked"]), HasSubstr("the merged array"));
  EXPECT_EQ(runShell("cd " + path("R") +
                     " && sha256sum -c --quiet SHA256SUMS &&"
                     " sha256sum < " +
                     path("b.fa"))
                .out,
            std::string(found["inputs"][1]["sha256"]) + "  -\n");
  EXPECT_FALSE(folder_.holds("R.part"));

  const auto before = fs::last_write_time(path("R/manifest.json"));
  EXPECT_THAT(succeed("build -o R a.fa b.fa c.fa").err,
              HasSubstr("is there already, and whole"));
  EXPECT_EQ(fs::last_write_time(path("R/manifest.json")), before);
}

TEST_F(Build, MakesTheSameWhateverTheThreads) {
  for (const std::string kind : {"--array --strands both", "--trees"}) {
    succeed("build -o R --restart -q -j 1 " + kind + " a.fa b.fa c.fa");
    const Outcome quiet =
        succeed("build -o S --restart -q -j 3 --memory 500M " + kind +
                " a.fa b.fa c.fa");
    EXPECT_EQ(quiet.out + quiet.err, "");
    EXPECT_EQ(data("R"), data("S"));
    EXPECT_EQ(folder_.read("R/SHA256SUMS"), folder_.read("S/SHA256SUMS"));
    json a = manifest("R"), b = manifest("S");
    for (const char* differs : {"run", "command"}) {
      a.erase(differs);
      b.erase(differs);
    }
    EXPECT_EQ(a, b);
  }
}

TEST_F(Build, GoesOnWithWhatStands) {
  succeed("build -o S -q a.fa b.fa c.fa");
  const std::string line = "build -o R -j 2 a.fa b.fa c.fa";
  ASSERT_NO_FATAL_FAILURE(leavePart(line));
  EXPECT_THAT(succeed(line).err,
              AllOf(HasSubstr("going on with"),
                    HasSubstr("3 suffix arrays of an interrupted run stood")));
  EXPECT_EQ(data("R"), data("S"));
  EXPECT_EQ(manifest("R")["run"]["resumed"], true);

  // As if the run had ended with all but the names.
  const auto undo = [&] {
    fs::rename(path("R"), path("R.part"));
    fs::rename(path("R.part/manifest.json"), path("R.part/unfinished.json"));
  };
  undo();
  EXPECT_THAT(succeed(line).err, HasSubstr("merged already: "));
  EXPECT_EQ(data("R"), data("S"));

  undo();
  std::string bytes = folder_.read("R.part/data.ST/data_1.stpsa");
  bytes[9] ^= 1;
  folder_.write("R.part/data.ST/data_1.stpsa", bytes);
  EXPECT_THAT(
      succeed(line).err,
      AllOf(HasSubstr("data_1.stpsa is not as it was written: made again"),
            HasSubstr("2 suffix arrays of an interrupted run stood")));
  EXPECT_EQ(data("R"), data("S"));
}

TEST_F(Build, MakesAnewWhatHasChanged) {
  const std::string line = "build -o R a.fa b.fa c.fa";
  ASSERT_NO_FATAL_FAILURE(leavePart(line));
  folder_.write("b.fa", ">b\nACGTTGCA\n");
  EXPECT_THAT(succeed(line).err,
              AllOf(HasSubstr("b.fa has changed: what was made of it is made"),
                    HasSubstr("1 suffix arrays of an interrupted run stood")));
  succeed("build -o S -q a.fa b.fa c.fa");
  EXPECT_EQ(data("R"), data("S"));
}

TEST_F(Build, SurvivesKills) {
  succeed("build -o S -q a.fa b.fa c.fa");
  std::mt19937 random(30);
  for (int round = 0; round < 2; round++) {
    fs::remove_all(path("R"));
    double seconds = 0.01;  // longer each time, so that it ends anywhere
    for (;; seconds *= 1.2) {
      const double time =
          seconds * std::uniform_real_distribution(1.0, 1.5)(random);
      const Outcome outcome =
          run("build -o R -q -j 2 a.fa b.fa c.fa",
              {.under = {"timeout", "-s", "KILL", std::to_string(time)}});
      if (outcome.status == 0) break;
      ASSERT_EQ(outcome.status, 128 + SIGKILL) << outcome.err;
      ASSERT_TRUE(!folder_.holds("R") || folder_.holds("R/manifest.json"));
    }
    EXPECT_EQ(data("R"), data("S"));
    EXPECT_FALSE(folder_.holds("R.part"));
  }
}

TEST_F(Build, RefusesWhatItCannotDo) {
  EXPECT_THAT(failure("build -o R --memory 1M a.fa"),
              AllOf(HasSubstr(" needs "), HasSubstr("; you allow 1M")));
  EXPECT_THAT(failure("build -o R a.fa a.fa"), HasSubstr("is named twice"));
  EXPECT_THAT(failure("build -o R -"), HasSubstr("from files only"));
  EXPECT_THAT(failure("build -o R"), HasSubstr("no sequence files"));
  EXPECT_THAT(failure("build -o . a.fa"), HasSubstr("not a name"));
  EXPECT_THAT(failure("build -o R none.fa"),
              HasSubstr("none.fa: No such file or directory"));
  folder_.write("d.fa", "no sequence\n");
  EXPECT_THAT(failure("build -o R d.fa"), HasSubstr("d.fa"));
  EXPECT_FALSE(folder_.holds("R") || folder_.holds("R.part"));

  folder_.write("R/mine", "");
  EXPECT_THAT(failure("build -o R --restart a.fa"),
              HasSubstr("was not left by a build"));
  EXPECT_TRUE(folder_.holds("R/mine"));
  fs::remove_all(path("R"));
  folder_.write("R.part/mine", "");
  EXPECT_THAT(failure("build -o R --restart a.fa"),
              HasSubstr("was not left by a build"));
  fs::remove_all(path("R.part"));
  folder_.write("E", "");
  EXPECT_THAT(failure("build -o E a.fa"), HasSubstr("was not left by a build"));

  ASSERT_NO_FATAL_FAILURE(leavePart("build -o R a.fa b.fa c.fa"));
  EXPECT_THAT(failure("build -o R a.fa b.fa"),
              HasSubstr("R.part: was begun with other files"));
  folder_.write("list", path("a.fa") + "\r\n\n" + path("b.fa"));
  succeed("build -o R --restart --list " + path("list"));
  EXPECT_EQ(manifest("R")["inputs"].size(), 2);
  EXPECT_THAT(failure("build -o R a.fa"), HasSubstr("--restart replaces it"));
  succeed("build -o R --restart --no-check a.fa");
  EXPECT_EQ(manifest("R")["checked"], "");
  EXPECT_FALSE(folder_.holds("R.part"));
}

TEST_F(Build, IsOneArgumentOfOtherCommands) {
  succeed("build -o R -q a.fa b.fa");
  const std::pair<std::string, std::string> cases[] = {
      {"check", "-j 2"},
      {"find", "ACGTA CCG"},
      {"pangenome", "--max-k 5"},
      {"export", "bwt --newline"}};
  for (const auto& [command, rest] : cases) {
    SCOPED_TRACE(command);
    const Outcome two = succeed(command + " R/ data " + rest);
    EXPECT_NE(two.out, "");
    EXPECT_EQ(succeed(command + " R " + rest).out, two.out);
  }
  EXPECT_EQ(succeed("check -j 2 R").out, succeed("check R/").out);
  EXPECT_EQ(succeed("view --count 3 R").out,
            succeed("view --count 3 R/data.ST/data.stpsa").out);
  EXPECT_THAT(failure("check a.fa"),
              AllOf(HasSubstr("prefix is required"),
                    HasSubstr("a.fa' is no result of build")));
  EXPECT_THAT(failure("find S ACGTA"), HasSubstr("S' is no result of build"));
  EXPECT_THAT(failure("export R"), Not(HasSubstr("no result")));
  for (const std::string folder : {".", "./", "..", "/"}) {
    EXPECT_THAT(failure("check " + folder + " nowhere"),
                HasSubstr("cannot be checked without that file"))
        << folder;
  }
}

TEST_F(Build, LeavesTheSlashOfAFolderToAnybody) {
  succeed("prepare -o D -p x a.fa");
  succeed("merge D x -p m");
  const std::string rest = " x -p m ACGTA";
  EXPECT_EQ(succeed("find D" + rest).out, succeed("find D/" + rest).out);
}

TEST_F(Build, CallsNothingWholeThatIsNot) {
  succeed("build -o R -q a.fa b.fa");
  fs::remove(path("R/data.ST/data.stpsa"));
  EXPECT_THAT(failure("build -o R a.fa b.fa"),
              AllOf(HasSubstr("data.stpsa: is not there"),
                    HasSubstr("--restart makes it again")));
  EXPECT_THAT(failure("add R b.fa"), HasSubstr("data.stpsa: is not there"));
  succeed("build -o R -q --restart a.fa b.fa");
}

TEST_F(Build, CountsNoGenomeWithoutSequence) {
  folder_.write("d.fa", ">d\nNNNN\n");
  const Outcome made = succeed("build -o R a.fa d.fa b.fa");
  EXPECT_THAT(made.out, HasSubstr("R: 2 genomes, "));
  EXPECT_THAT(made.err,
              HasSubstr("have no suffix array, first " + path("d.fa")));
  EXPECT_THAT(succeed("status R").out, HasSubstr(" of 2 genomes, "));
}

TEST_F(Build, AddsGenomesAsIfAllHadBeenThere) {
  for (const std::string kind : {"", "--strands both", "--trees"}) {
    SCOPED_TRACE(kind);
    succeed("build -o S -q --restart " + kind + " a.fa b.fa c.fa");
    succeed("build -o R -q --restart " + kind + " a.fa");
    const Files before = data("R");
    const std::string hidden = path("a.hidden");
    fs::rename(path("a.fa"), hidden);  // it isn't needed any more
    EXPECT_THAT(failure("add R -j 2 b.fa c.fa",
                        {.fileSize = kind.empty() ? 100'000 : 40'000}),
                HasSubstr("R.part keeps what is done"));
    EXPECT_EQ(data("R"), before);
    const Outcome made = succeed("add R -j 2 b.fa c.fa");
    fs::rename(hidden, path("a.fa"));
    EXPECT_THAT(made.err, HasSubstr("an interrupted run"));
    EXPECT_EQ(data("R"), data("S"));
    EXPECT_EQ(folder_.read("R/SHA256SUMS"), folder_.read("S/SHA256SUMS"));
    EXPECT_EQ(manifest("R")["inputs"], manifest("S")["inputs"]);
    EXPECT_FALSE(folder_.holds("R.part"));
    EXPECT_THAT(succeed("add R b.fa c.fa").err, HasSubstr("is there already"));
  }
  folder_.write("d.fa", ">d\nACGGT\n");
  EXPECT_THAT(failure("add R c.fa d.fa"), HasSubstr("in it already"));
  folder_.write("c.fa", ">c\nACGGT\n");
  EXPECT_THAT(failure("add R c.fa"), HasSubstr("of other contents"));
  std::string bytes = folder_.read("R/data.ST/data_0.stbin");
  folder_.write("R/data.ST/data_0.stbin", bytes + "....");
  EXPECT_THAT(failure("add R d.fa"), HasSubstr("not as it was when"));
  EXPECT_THAT(failure("add T d.fa"), HasSubstr("T: no result of a build"));
}

TEST_F(Build, IsToldAboutByStatus) {
  EXPECT_THAT(failure("status R"), HasSubstr("no result of a build"));
  ASSERT_NO_FATAL_FAILURE(leavePart("build -o R a.fa b.fa c.fa"));
  const Outcome part = run("status R --json");
  EXPECT_EQ(part.status, 1);
  EXPECT_EQ(json::parse(part.out), json({{"result", path("R")},
                                         {"state", "absent"},
                                         {"unfinished", "prepared"}}));
  succeed("build -o R -q a.fa b.fa c.fa");
  EXPECT_THAT(succeed("status R --checksums -j 2").out,
              AllOf(HasSubstr("R: whole, a suffix array"),
                    HasSubstr("made by palvor-kit "), HasSubstr("\nproved: ")));
  std::string bytes = folder_.read("R/data.ST/data.stlcp");
  bytes[40] ^= 2;
  folder_.write("R/data.ST/data.stlcp", bytes);
  succeed("status R");
  EXPECT_THAT(run("status R --checksums").out, HasSubstr("other contents"));
  folder_.write("R/data.ST/data.stlcp", bytes.substr(4));
  const Outcome damaged = run("status R --json");
  EXPECT_EQ(damaged.status, 1);
  EXPECT_EQ(json::parse(damaged.out)["state"], "damaged");
  EXPECT_THAT(damaged.out, HasSubstr("37076 bytes, expected 37080"));
  for (const char* manifest : {"{", "{}", "[]", "{\"format\": 2}"}) {
    folder_.write("R/manifest.json", manifest);
    EXPECT_THAT(failure("status R"), HasSubstr("not a result's manifest"));
  }
}

}  // namespace
