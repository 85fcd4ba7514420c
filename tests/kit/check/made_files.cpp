#include "kit/check/made_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/temporary_folder.h"

Files allMadeOf(const std::string& a, const std::string& b, int nodes) {
  const TemporaryFolder folder;
  const std::string root = folder.path("");
  const std::string trees = std::to_string(nodes);
  EXPECT_EQ(runKit({"prepare", "-o", root, "-p", "d", "--lcp",
                    folder.write("a.fa", a), folder.write("b.fa", b)})
                .status,
            0);
  EXPECT_EQ(runPalvor({root, "d", "-a", "-l", "-q"}).status, 0);
  EXPECT_EQ(runPalvor({root, "d", "-q", "-n", trees}).status, 0);
  return folder.files("d.ST");
}

Outcome check(const Files& files, std::vector<std::string> options) {
  const TemporaryFolder folder;
  for (const auto& [name, bytes] : files) folder.write("d.ST/" + name, bytes);
  options.insert(options.begin(), {"check", folder.path(""), "d"});
  return runKit(options);
}

Change set(const std::string& file, size_t word, uint32_t value) {
  return [=](Files& files) {
    std::string& bytes = files["d" + file];
    if (bytes.size() < 4 * word + 4) bytes.resize(4 * word + 4);
    std::memcpy(&bytes[4 * word], &value, 4);
  };
}

Change cut(const std::string& file, size_t less) {
  return [=](Files& files) {
    std::string& bytes = files.at("d" + file);
    bytes.resize(bytes.size() - less);
  };
}

Change lose(const std::string& file) {
  return [=](Files& files) { files.erase("d" + file); };
}

Change suffix(const std::string& file, size_t record, size_t word,
              uint32_t value) {
  return set(file, 4 * record + word, value);
}

Change exchange(const std::string& file, size_t record) {
  return [=](Files& files) {
    char* first = &files.at("d" + file).at(kSuffix * record);
    std::swap_ranges(first, first + kSuffix, first + kSuffix);
  };
}

Change repeat(const std::string& file, size_t record) {
  return [=](Files& files) {
    char* first = &files.at("d" + file).at(kSuffix * record);
    std::memcpy(first + kSuffix, first, kSuffix);
  };
}
