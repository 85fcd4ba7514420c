#include "kit/answers/merged_strings.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "kit/answers/mapped_file.h"
#include "kit/file_error.h"
#include "kit/record_file.h"

namespace kit {

const uint32_t* MergedStrings::read(uint32_t input, const std::string& path) {
  const uint64_t count = wordCount(input);
  std::vector<uint32_t> words = RecordFile<uint32_t>(path).read(0, count);
  if (words.size() < count) {
    throw FileError(path, fmt::format("has {} bytes, expected {}",
                                      4 * words.size(), 4 * count));
  }
  read_.push_back(std::move(words));
  return mapped_[input] = read_.back().data();
}

const uint32_t* MergedStrings::map(uint32_t input) {
  const std::string path = fmt::format("{}_{}.stbin", inputs_.base(), input);
  if (isShort(input)) return read(input, path);
  const uint64_t bytes = 4 * wordCount(input);
  // The system allows a process 65,530.
  if (mappedCount_ == 32768) unmapAll();
  mapped_[input] = static_cast<const uint32_t*>(mapFile(path, bytes));
  mappedCount_++;
  return mapped_[input];
}

void MergedStrings::unmapAll() {
  for (uint32_t i = 0; i < mapped_.size(); i++) {
    if (mapped_[i] == nullptr || isShort(i)) continue;
    unmapFile(mapped_[i], 4 * wordCount(i));
    mapped_[i] = nullptr;
  }
  mappedCount_ = 0;
}

}  // namespace kit
