#include "kit/prepare/data_folder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/record_file.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

constexpr size_t kLongestPath = 199;  // characters; palvor's limit

// Every kind of file that palvor and palvor-kit keep in a data folder.
constexpr std::string_view kKinds[] = {
    ".stlengths",    ".stblengths", ".stplengths", ".inputs.tsv",
    ".manifest.tsv", ".ranges.tsv", ".stbin",      ".stpsa",
    ".stlcp",        ".stree",      ".stdiv"};

bool consume(std::string_view& text, std::string_view start) {
  if (!text.starts_with(start)) return false;
  text.remove_prefix(start.size());
  return true;
}

bool consumeNumber(std::string_view& text) {
  const auto digit = [](unsigned char c) { return std::isdigit(c) != 0; };
  const auto end = std::find_if_not(text.begin(), text.end(), digit);
  if (end == text.begin()) return false;
  text.remove_prefix(static_cast<size_t>(end - text.begin()));
  return true;
}

// Whether a file name is the prefix, perhaps a number, perhaps one in a range,
// and a known kind; or that of such a file that is being written.
bool belongsTo(std::string_view name, const std::string& prefix) {
  const bool unfinished = name.ends_with(kPartSuffix);
  if (unfinished) name.remove_suffix(std::string_view(kPartSuffix).size());
  if (!consume(name, prefix)) return false;
  if (consume(name, "_") && !consumeNumber(name)) return false;
  if (consume(name, ".range_") && !consumeNumber(name)) return false;
  if (name.starts_with(".range.")) consume(name, ".range");
  return std::ranges::any_of(kKinds, [&](std::string_view kind) {
    return name == kind ||
           (unfinished && name.starts_with(std::string(kind) + "."));
  });
}

const std::string& tested(const std::string& path) {
  if (path.size() > kLongestPath) {
    throw std::runtime_error(
        fmt::format("palvor takes paths of up to {} characters, this one has "
                    "{}: {}",
                    kLongestPath, path.size(), path));
  }
  return path;
}

}  // namespace

DataFolder::DataFolder(const std::string& directory, const std::string& prefix)
    : directory_(directory), prefix_(prefix) {
  if (prefix.empty() || prefix.find('/') != std::string::npos ||
      prefix.front() == '-') {
    throw std::runtime_error(
        fmt::format("not a prefix for files: '{}'", prefix));
  }
  if (directory_.empty()) directory_ = ".";
  if (directory_.front() == '-') directory_.insert(0, "./");
  if (directory_.back() != '/') directory_ += '/';
  folder_ = directory_ + prefix_ + ".ST/";
  path(".stblengths");  // tests the length
}

std::string DataFolder::path(const std::string& kind) const {
  return tested(folder_ + prefix_ + kind);
}

std::string DataFolder::path(uint64_t number, const std::string& kind) const {
  return tested(folder_ + name(number, kind));
}

std::string DataFolder::name(uint64_t number, const std::string& kind) const {
  return fmt::format("{}_{}{}", prefix_, number, kind);
}

std::vector<fs::path> DataFolder::filesThere() const {
  std::error_code failure;
  std::vector<fs::path> found;
  fs::directory_iterator entry(folder_, failure);
  while (!failure && entry != fs::directory_iterator()) {
    if (belongsTo(entry->path().filename().string(), prefix_)) {
      found.push_back(entry->path());
    }
    entry.increment(failure);
  }
  if (failure) throw FileError(folder_, failure.message());
  return found;
}

void DataFolder::removeAllBut(const std::set<std::string>& names) const {
  for (const fs::path& file : filesThere()) {
    if (!names.contains(file.filename().string())) removeFile(file.string());
  }
}

void DataFolder::create(bool force) const {
  createFolders(folder_);
  const std::vector<fs::path> found = filesThere();
  if (found.empty()) return;
  if (!force) {
    throw std::runtime_error(fmt::format(
        "{} holds files of the prefix '{}' already, {}; --force replaces them",
        folder_, prefix_,
        isThere(path(".stlengths"))
            ? fmt::format("such as {}", found.front().filename().string())
            : "left by a run that did not finish"));
  }
  // Without its lengths file a folder is not taken for a whole one.
  removeFile(path(".stlengths"));
  for (const fs::path& file : found) removeFile(file.string());
}

}  // namespace kit
