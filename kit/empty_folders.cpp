#include "kit/empty_folders.h"

#include <system_error>

namespace kit {

namespace fs = std::filesystem;

EmptyFolders::EmptyFolders(const fs::path& folder) {
  std::error_code ignored;
  for (fs::path path = folder;
       !path.empty() &&
       fs::status(path, ignored).type() == fs::file_type::not_found;
       path = path.parent_path()) {
    missing_.push_back(path);
  }
}

EmptyFolders::~EmptyFolders() {
  std::error_code ignored;
  for (const fs::path& path : missing_) fs::remove(path, ignored);
}

}  // namespace kit
