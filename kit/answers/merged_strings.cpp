#include "kit/answers/merged_strings.h"

#include <fmt/format.h>

#include <string>

#include "kit/answers/mapped_file.h"
#include "kit/file_error.h"

namespace kit {

const uint32_t* MergedStrings::map(uint32_t input) {
  const std::string path = fmt::format("{}_{}.stbin", inputs_.base(), input);
  const uint64_t bytes = 4 * wordCount(input);
  // The system allows a process 65,530.
  if (mappedCount_ == 32768) unmapAll();
  mapped_[input] = static_cast<const uint32_t*>(mapFile(path, bytes));
  mappedCount_++;
  return mapped_[input];
}

void MergedStrings::unmapAll() {
  for (uint32_t i = 0; i < mapped_.size(); i++) {
    if (mapped_[i] != nullptr) unmapFile(mapped_[i], 4 * wordCount(i));
    mapped_[i] = nullptr;
  }
  mappedCount_ = 0;
}

}  // namespace kit
