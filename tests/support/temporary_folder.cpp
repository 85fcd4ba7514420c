#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "palvor-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("no temporary folder " + pattern);
  }
  root_ = pattern;
}

TemporaryFolder::~TemporaryFolder() { fs::remove_all(root_); }

std::string TemporaryFolder::path(const std::string& name) const {
  return root_ + "/" + name;
}

std::string TemporaryFolder::write(const std::string& name,
                                   const std::string& bytes) const {
  fs::create_directories(fs::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << bytes;
  return path(name);
}

std::string TemporaryFolder::read(const std::string& name) const {
  std::ifstream file(path(name), std::ios::binary);
  if (!file) throw std::runtime_error("no file " + path(name));
  return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryFolder::holds(const std::string& name) const {
  return fs::exists(path(name));
}

std::map<std::string, std::string> TemporaryFolder::files(
    const std::string& name) const {
  std::map<std::string, std::string> result;
  if (!holds(name)) return result;
  for (const auto& entry : fs::directory_iterator(path(name))) {
    const std::string file = entry.path().filename().string();
    result[file] = read(name + "/" + file);
  }
  return result;
}
