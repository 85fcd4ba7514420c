#include "kit/build/result_folder.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "kit/output_file.h"
#include "kit/record_file.h"

namespace kit {

namespace fs = std::filesystem;

namespace {

std::string withoutSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

bool ResultFolder::canBe(const std::string& path) {
  const std::string name = fs::path(withoutSlashes(path)).filename().string();
  return !name.empty() && name != "." && name != "..";
}

ResultFolder::ResultFolder(const std::string& path)
    : path_(withoutSlashes(path)) {
  if (!canBe(path)) {
    throw std::runtime_error(
        fmt::format("not a name for a result's folder: '{}'", path));
  }
}

ResultFolder ResultFolder::unfinished() const {
  return ResultFolder(path_ + kPartSuffix);
}

std::string ResultFolder::dataBase() const {
  return fmt::format("{0}/{1}.ST/{1}", path_, kResultPrefix);
}

std::string ResultFolder::faultOf(const std::string& name,
                                  uint64_t bytes) const {
  if (!isThere(path(name))) return "is not there";
  const uint64_t found = StoredBytes(path(name), 1).records();
  return found == bytes ? ""
                        : fmt::format("{} bytes, expected {}", found, bytes);
}

bool ResultFolder::isResult() const { return isThere(path(kResultManifest)); }

}  // namespace kit
