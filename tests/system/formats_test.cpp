// The worked examples in docs/formats.md are what the programs write.

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

namespace {

// The page's blocks that begin with "```hex <file>", as bytes, by file.
std::map<std::string, std::string> examplesOf(const std::string& page) {
  std::ifstream stream(page);
  std::map<std::string, std::string> examples;
  std::string line, file;
  while (std::getline(stream, line)) {
    if (line.rfind("```", 0) == 0) {
      file = line.rfind("```hex ", 0) == 0 ? line.substr(7) : "";
      continue;
    }
    if (file.empty()) continue;
    std::string digits;
    for (const char c : line) {
      if (std::isxdigit(static_cast<unsigned char>(c)) != 0) digits += c;
    }
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
      examples[file] +=
          static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
  }
  return examples;
}

TEST(Formats, ExamplesAreWhatIsWritten) {
  const TemporaryFolder folder;
  const std::string root = folder.path("") + "/";
  const std::string x = folder.write("x.fa", ">x\nGATTC\n");
  const std::string y = folder.write("y.fa", ">y\nGAT\n");
  ASSERT_EQ(runKit({"prepare", "-o", root, "-p", "ex", "--lcp", x, y}).status,
            0);
  ASSERT_EQ(runShell("palvor " + root + " ex -q -n 99").status, 0);
  ASSERT_EQ(runShell("palvor " + root + " ex -q -a -l -p m").status, 0);

  const auto examples = examplesOf(PALVOR_FORMATS_PAGE);
  ASSERT_EQ(examples.size(), 11u);
  for (const auto& [file, bytes] : examples) {
    EXPECT_EQ(folder.read(file), bytes) << file;
  }

  const Outcome traced = runKit({"view", "--data", root + "ex.ST", "--count",
                                 "2", root + "m.ST/m.stpsa"});
  std::stringstream page;
  page << std::ifstream(PALVOR_FORMATS_PAGE).rdbuf();
  const std::vector<std::string> lines = linesOf(traced.out);
  ASSERT_EQ(lines.size(), 3u) << traced.err;
  for (std::string line : lines) {
    if (const size_t at = line.find(root); at != std::string::npos) {
      line.erase(at, root.size());
    }
    EXPECT_NE(page.str().find("\n    " + line + "\n"), std::string::npos)
        << line;
  }
}

}  // namespace
