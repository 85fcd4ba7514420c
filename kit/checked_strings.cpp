#include "kit/checked_strings.h"

#include <stdexcept>

#include "kit/record_file.h"

namespace kit {
namespace {

constexpr uint32_t kLongestInput = 1'073'741'823;  // characters

}  // namespace

CheckedStrings::CheckedStrings(const std::string& base, FaultLog& faults)
    : lengths_(RecordFile<uint32_t>(base + ".stlengths").read(0, UINT64_MAX)) {
  const std::string bitsPath = base + ".stblengths";
  const auto bits = RecordFile<uint32_t>(bitsPath).read(0, UINT64_MAX);
  if (bits.size() != lengths_.size()) {
    faults.add(bitsPath, std::to_string(bits.size()) + " entries, expected " +
                             std::to_string(lengths_.size()) +
                             ", as many as in the lengths file");
  }
  words_.resize(lengths_.size());
  for (uint32_t i = 0; i < count(); i++) {
    const uint64_t expected = 2 * uint64_t{lengths_[i]};
    if (i < bits.size() && bits[i] != expected) {
      faults.add(bitsPath, i,
                 std::to_string(bits[i]) + " bits, expected " +
                     std::to_string(expected) + ", two for each character");
    }
    if (lengths_[i] > kLongestInput) {
      faults.add(base + ".stlengths", i,
                 std::to_string(lengths_[i]) +
                     " characters, expected at most " +
                     std::to_string(kLongestInput));
    }
    load(base + "_" + std::to_string(i) + ".stbin", i, faults);
    starts_.push_back(starts_.back() + (length(i) + 63) / 64 * 64);
    total_ += lengths_[i];
  }
}

void CheckedStrings::load(const std::string& path, uint32_t input,
                          FaultLog& faults) {
  const RecordFile<uint32_t> file(path);
  const uint64_t dataWords = (uint64_t{lengths_[input]} + 15) / 16;
  if (file.size() < dataWords) {
    throw std::runtime_error(path + ": " + std::to_string(4 * file.size()) +
                             " bytes are too few for a string of " +
                             std::to_string(lengths_[input]) + " characters");
  }
  if (file.size() != dataWords + 1) {
    faults.add(path, std::to_string(file.size()) + " words, expected " +
                         std::to_string(dataWords + 1));
  }
  std::vector<uint32_t> words = file.read(0, dataWords + 1);
  if (words.size() > dataWords && words[dataWords] != 0) {
    faults.add(path, dataWords, "the trailer word is not zero");
  }
  if (lengths_[input] % 16 != 0) {
    const unsigned used = 2 * (lengths_[input] % 16);
    uint32_t& last = words[dataWords - 1];
    const uint32_t padding = ~uint32_t{0} >> used;
    if ((last & padding) != 0) {
      faults.add(path, dataWords - 1,
                 "bits after the last character are not "
                 "zero");
      last &= ~padding;
    }
  }
  words.resize(dataWords);
  words.resize(dataWords + 3);
  words_[input] = std::move(words);
}

}  // namespace kit
