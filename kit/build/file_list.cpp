#include "kit/build/file_list.h"

#include <cstdint>

#include "kit/record_file.h"

namespace kit {

std::vector<std::string> readFileList(const std::string& path) {
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  std::vector<std::string> files(1);
  for (const char c : bytes) {
    std::string& file = files.back();
    if (c != '\n') {
      file += c;
      continue;
    }
    if (file.ends_with('\r')) file.pop_back();  // of a list from Windows
    if (!file.empty()) files.emplace_back();
  }
  if (files.back().empty()) files.pop_back();
  return files;
}

}  // namespace kit
