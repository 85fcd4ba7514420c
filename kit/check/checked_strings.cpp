#include "kit/check/checked_strings.h"

#include <fmt/format.h>

#include <numeric>

#include "kit/record_file.h"

namespace kit {
namespace {

constexpr uint32_t kLongestInput = 1'073'741'823;  // characters

}  // namespace

CheckedStrings::CheckedStrings(const std::string& base, uint64_t most,
                               FaultLog& faults) {
  const std::string lengthsPath = base + ".stlengths";
  const std::string bitsPath = base + ".stblengths";
  const RecordFile<uint32_t> lengthsFile(lengthsPath);
  const RecordFile<uint32_t> bitsFile(bitsPath);
  countInFolder_ = lengthsFile.size();
  lengths_ = lengthsFile.read(0, most);
  const std::vector<uint32_t> bits = bitsFile.read(0, most);
  if (bitsFile.size() != countInFolder_) {
    faults.add(bitsPath, fmt::format("{} entries, expected {}, as many as in "
                                     "the lengths file",
                                     bitsFile.size(), countInFolder_));
  }
  for (uint32_t i = 0; i < count(); i++) {
    const uint64_t expected = 2 * uint64_t{lengths_[i]};
    if (i < bits.size() && bits[i] != expected) {
      faults.add(bitsPath, i,
                 fmt::format("{} bits, expected {}, two for each character",
                             bits[i], expected));
    }
    if (lengths_[i] > kLongestInput) {
      faults.add(lengthsPath, i,
                 fmt::format("{} characters, expected at most {}", lengths_[i],
                             kLongestInput));
    }
    strings_.emplace_back(fmt::format("{}_{}.stbin", base, i), lengths_[i],
                          &faults);
    starts_.push_back(starts_.back() + (length(i) + 63) / 64 * 64);
    total_ += lengths_[i];
  }
}

uint64_t CheckedStrings::total(uint32_t from, uint32_t to) const {
  return std::accumulate(lengths_.begin() + from, lengths_.begin() + to,
                         uint64_t{0});
}

}  // namespace kit
