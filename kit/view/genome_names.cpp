#include "kit/view/genome_names.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "kit/file_error.h"
#include "kit/record_file.h"

namespace kit {

namespace fs = std::filesystem;

std::string folderBase(const std::string& folder) {
  fs::path path(folder);
  if (path.filename().empty()) path = path.parent_path();
  if (path.extension() != ".ST") {
    throw FileError(folder, "no data folder, DIR/PREFIX.ST");
  }
  return (path / path.stem()).string();
}

std::optional<uint64_t> numberInName(std::string_view path,
                                     std::string_view kind) {
  if (!path.ends_with(kind)) return std::nullopt;
  path.remove_suffix(kind.size());
  const size_t digits = path.find_last_not_of("0123456789") + 1;
  if (digits < 2 || path[digits - 1] != '_') return std::nullopt;
  path.remove_prefix(digits);
  uint64_t number = 0;
  const auto [end, error] = std::from_chars(path.begin(), path.end(), number);
  if (error != std::errc() || end != path.end()) return std::nullopt;
  return number;
}

GenomeNames::GenomeNames(const std::string& dataFolder,
                         const std::string& file) {
  std::string folder = dataFolder;
  if (folder.empty()) {
    folder = fs::path(file).parent_path().string();
    if (fs::path(folder).extension() != ".ST") return;
  }
  const std::string path = folderBase(folder) + ".inputs.tsv";
  if (isThere(path)) inputs_ = readInputTable(path);
}

const InputOrigin* GenomeNames::find(uint64_t input) const {
  return input < inputs_.size() ? &inputs_[input] : nullptr;
}

uint64_t GenomeNames::firstInput(uint64_t array) const {
  const auto first = std::find_if(
      inputs_.begin(), inputs_.end(),
      [&](const InputOrigin& input) { return input.array == array; });
  return first == inputs_.end()
             ? 0
             : static_cast<uint64_t>(first - inputs_.begin());
}

}  // namespace kit
