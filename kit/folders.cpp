#include "kit/folders.h"

#include <fmt/format.h>
#include <sys/statvfs.h>

#include <filesystem>
#include <system_error>

#include "kit/file_error.h"

namespace kit {

std::string dataBase(const std::string& directory, const std::string& prefix) {
  return fmt::format("{0}{1}.ST/{1}", directory, prefix);
}

void createFolders(const std::string& path) {
  std::error_code failure;
  std::filesystem::create_directories(path, failure);
  if (failure) throw FileError(path, failure.message());
}

void removeFile(const std::string& path) {
  std::error_code failure;
  std::filesystem::remove(path, failure);
  if (failure) throw FileError(path, failure.message());
}

std::optional<uint64_t> freeSpace(const std::string& folder) {
  std::error_code failure;
  std::filesystem::path there = std::filesystem::absolute(folder, failure);
  while (!failure && !std::filesystem::exists(there, failure) &&
         there.has_relative_path()) {
    there = there.parent_path();
  }
  struct statvfs disk = {};
  if (::statvfs(there.c_str(), &disk) != 0) return std::nullopt;
  return uint64_t{disk.f_bavail} * disk.f_frsize;
}

}  // namespace kit
