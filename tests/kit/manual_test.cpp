// Manual pages and shell completions have the options that the programs have.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "kit/commands.h"
#include "kit/completion/completion.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

using testing::HasSubstr;

using Names = std::set<std::string>;

std::string contentsOf(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// All that matches, the first group of it.
Names matches(const std::string& text, const std::regex& pattern) {
  Names found;
  for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end;
       ++i) {
    found.insert((*i)[1]);
  }
  return found;
}

std::string manualPage(const std::string& name) {
  const std::string text = contentsOf(PALVOR_MANUAL_PAGES "/" + name + ".1");
  EXPECT_THAT(text, testing::Not(HasSubstr("@"))) << "left by the build";
  return std::regex_replace(text, std::regex("\\\\-"), "-");
}

// The options that a page explains: each after a .TP.
Names explainedOptions(const std::string& page) {
  Names options;
  const std::regex tag("(?:^|\n)\\.TP\n(\\.B[^\n]*)");
  for (const std::string& line : matches(page, tag)) {
    const Names some =
        matches(line, std::regex("[ \"R](--?[A-Za-z][-a-z]*)(?![-A-Za-z])"));
    options.insert(some.begin(), some.end());
  }
  return options;
}

class Program : public testing::Test {
 protected:
  Program() : app_("", "palvor-kit") { kit::addCommands(app_); }

  static Names optionsOf(const CLI::App& command) {
    Names options;
    for (const CLI::Option* option : command.get_options()) {
      if (option->get_positional()) continue;
      for (const auto& name : option->get_snames()) options.insert("-" + name);
      for (const auto& name : option->get_lnames()) options.insert("--" + name);
    }
    options.erase("-h");
    options.erase("--help");
    return options;
  }

  CLI::App app_;
};

TEST_F(Program, IsExplainedOptionByOption) {
  const std::string overview = manualPage("palvor-kit");
  for (const CLI::App* command : app_.get_subcommands(nullptr)) {
    const std::string name = command->get_name();
    SCOPED_TRACE(name);
    EXPECT_THAT(overview, HasSubstr(name));
    if (name == "help") continue;
    EXPECT_THAT(overview, HasSubstr("palvor-kit-" + name));
    EXPECT_EQ(explainedOptions(manualPage("palvor-kit-" + name)),
              optionsOf(*command));
  }
}

// Whether the shell itself finds nothing wrong; true if it is not there.
bool isAccepted(const std::string& shell, const std::string& script) {
  const TemporaryFolder folder;
  const std::string line = "! command -v " + shell + " || " + shell + " -n " +
                           folder.write("script", script);
  const Outcome outcome = runShell(line);
  return outcome.status == 0 && outcome.err.empty();
}

TEST_F(Program, IsCompletedByShells) {
  const std::string bash = kit::completionScript(app_, kit::Shell::kBash);
  const std::string zsh = kit::completionScript(app_, kit::Shell::kZsh);
  const std::string fish = kit::completionScript(app_, kit::Shell::kFish);
  EXPECT_TRUE(isAccepted("bash", bash)) << bash;
  EXPECT_TRUE(isAccepted("zsh", zsh)) << zsh;
  EXPECT_TRUE(isAccepted("fish", fish)) << fish;
  for (const CLI::App* command : app_.get_subcommands(nullptr)) {
    for (const std::string& option : optionsOf(*command)) {
      EXPECT_THAT(bash, HasSubstr(option));
      EXPECT_THAT(zsh, HasSubstr(option));
      const bool isLong = option.starts_with("--");
      EXPECT_THAT(fish, HasSubstr(isLong ? " -l " + option.substr(2)
                                         : " -s " + option.substr(1)));
    }
  }
}

// What bash offers for the last of some words.
std::string offered(const std::string& script, const std::string& words) {
  return runShell("bash -c '. " + script + "; COMP_WORDS=(" + words +
                  "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _palvor_kit; "
                  "echo ${COMPREPLY[@]}' 2>/dev/null")
      .out;
}

TEST_F(Program, IsCompletedWithTheWordsThatFit) {
  const TemporaryFolder folder;
  const std::string script =
      folder.write("script", kit::completionScript(app_, kit::Shell::kBash));
  const auto offers = [&](const std::string& words) {
    return offered(script, words);
  };
  EXPECT_EQ(offers("palvor-kit pr"), "prepare\n");
  EXPECT_EQ(offers("palvor-kit prepare --st"), "--strands\n");
  EXPECT_EQ(offers("palvor-kit prepare --strands \"\""), "forward both\n");
  EXPECT_EQ(offers("palvor-kit prepare -j \"\""), "\n");
  EXPECT_EQ(offers("palvor-kit help vi"), "view\n");
  std::filesystem::create_directory(folder.path("data"));
  EXPECT_EQ(offers("palvor-kit prepare -o " + folder.path("d")),
            folder.path("data") + "\n");
  EXPECT_EQ(offers("palvor-kit view " + folder.path("s")), script + "\n");
}

TEST(MergeProgram, IsExplainedAndCompletedOptionByOption) {
  const Names options =
      matches(runPalvor({"x"}).err, std::regex("\t(-[A-Za-z])"));
  ASSERT_EQ(options.size(), 28u);
  const std::string page = manualPage("palvor");
  const size_t from = page.find(".SH OPTIONS"), to = page.find(".SH MESSAGES");
  EXPECT_EQ(matches(page.substr(from, to - from),
                    std::regex("\n\\.B[IR]? (-[A-Za-z])\\b")),
            options);
  const std::string folder = PALVOR_COMPLETIONS "/";
  EXPECT_EQ(
      matches(contentsOf(folder + "_palvor"), std::regex("'(-[A-Za-z])\\[")),
      options);
  Names fish;
  for (const std::string& letter : matches(contentsOf(folder + "palvor.fish"),
                                           std::regex(" -s ([a-zA-Z])")))
    fish.insert("-" + letter);
  EXPECT_EQ(fish, options);
  const std::string bash = contentsOf(folder + "palvor.bash");
  const size_t words = bash.find("-W '") + 3;
  EXPECT_EQ(matches(bash.substr(words, bash.find("' --", words) + 1 - words),
                    std::regex("[' ](-[A-Za-z])(?=[' ])")),
            options);
  EXPECT_TRUE(isAccepted("bash", bash));
  EXPECT_TRUE(isAccepted("zsh", contentsOf(folder + "_palvor")));
  EXPECT_TRUE(isAccepted("fish", contentsOf(folder + "palvor.fish")));
}

}  // namespace
