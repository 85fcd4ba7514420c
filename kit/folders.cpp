#include "kit/folders.h"

#include <filesystem>
#include <system_error>

#include "kit/file_error.h"

namespace kit {

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

}  // namespace kit
