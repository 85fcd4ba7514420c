#include "kit/build/file_list.h"

#include <cstdint>

#include "kit/record_file.h"

namespace kit {

std::vector<std::string> readFileList(const std::string& path) {
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  std::vector<std::string> files(1);
  for (const char c : bytes) {
    if (c != '\n') {
      files.back() += c;
    } else if (!files.back().empty()) {
      files.emplace_back();
    }
  }
  if (files.back().empty()) files.pop_back();
  return files;
}

}  // namespace kit
