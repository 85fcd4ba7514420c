#include "kit/packed_string.h"

#include <fmt/format.h>

#include "kit/file_error.h"
#include "kit/packer.h"
#include "kit/record_file.h"

namespace kit {

PackedString::PackedString(const std::string& path, uint64_t characters,
                           FaultLog* faults) {
  const RecordFile<uint32_t> file(path);
  const uint64_t dataWords = (characters + 15) / 16;
  if (file.size() < dataWords) {
    throw FileError(
        path, fmt::format("{} bytes are too few for a string of {} characters",
                          4 * file.size(), characters));
  }
  if (faults != nullptr && file.size() != dataWords + 1) {
    faults->add(
        path, fmt::format("{} words, expected {}", file.size(), dataWords + 1));
  }
  words_ = file.read(0, dataWords + 1);
  if (faults != nullptr && words_.size() > dataWords &&
      words_[dataWords] != 0) {
    faults->add(path, dataWords, "the trailer word is not zero");
  }
  if (characters % 16 != 0) {
    const uint32_t padding = ~uint32_t{0} >> 2 * (characters % 16);
    uint32_t& last = words_[dataWords - 1];
    if (faults != nullptr && (last & padding) != 0) {
      faults->add(path, dataWords - 1,
                  "bits after the last character are not zero");
    }
    last &= ~padding;
  }
  words_.resize(dataWords);
  words_.resize(dataWords + 3);
}

PackedString::PackedString(std::string_view text) {
  appendPacked(words_, 0, text);
  words_.resize(words_.size() + 3);
}

}  // namespace kit
