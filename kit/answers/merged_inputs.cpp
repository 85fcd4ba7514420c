#include "kit/answers/merged_inputs.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "kit/file_error.h"
#include "kit/record_file.h"

namespace kit {
namespace {

constexpr uint32_t kLongestInput = 1'073'741'823;  // characters

bool isReverseOf(const InputOrigin& reverse, const InputOrigin& forward) {
  return !forward.reverse && reverse.reverse && forward.file == reverse.file &&
         forward.sequence == reverse.sequence &&
         forward.offset == reverse.offset && forward.length == reverse.length;
}

}  // namespace

MergedInputs::MergedInputs(const std::string& base, uint64_t most)
    : base_(base) {
  const std::string lengthsPath = base + ".stlengths";
  const std::string tablePath = base + ".inputs.tsv";
  const RecordFile<uint32_t> file(lengthsPath);
  if (most > file.size()) {
    throw FileError(lengthsPath, fmt::format("there are only {} inputs, not {}",
                                             file.size(), most));
  }
  lengths_ = file.read(0, most == 0 ? UINT64_MAX : most);
  if (lengths_.empty()) throw FileError(lengthsPath, "there are no inputs");
  for (uint32_t i = 0; i < count(); i++) {
    if (lengths_[i] >= 1 && lengths_[i] <= kLongestInput) continue;
    throw FileError(lengthsPath,
                    fmt::format("input {} has {} characters, expected 1 to {}",
                                i, lengths_[i], kLongestInput));
  }
  if (!isThere(tablePath)) {
    throw FileError(tablePath,
                    "there is no table of inputs, so that no genome has a "
                    "name; palvor-kit prepare makes it");
  }
  origins_ = readInputTable(tablePath);
  if (origins_.size() != file.size()) {
    throw FileError(tablePath, fmt::format("{} inputs, expected {}, as many as "
                                           "lengths",
                                           origins_.size(), file.size()));
  }
  origins_.resize(lengths_.size());
  for (uint32_t i = 0; i < count(); i++) {
    if (lengths_[i] != origins_[i].length) {
      throw FileError(tablePath,
                      fmt::format("input {} has {} characters, but {} in the "
                                  "lengths file",
                                  i, origins_[i].length, lengths_[i]));
    }
  }
  total_ = std::accumulate(lengths_.begin(), lengths_.end(), uint64_t{0});
  uint32_t pairs = 0;
  for (uint32_t i = 0; i < count(); i++) {
    const bool isReverse = i > 0 && isReverseOf(origins_[i], origins_[i - 1]);
    forwardOf_.push_back(isReverse ? i - 1 : i);
    if (isReverse) pairs++;
  }
  bothStrands_ = 2 * uint64_t{pairs} == count();
  const auto isReverse = [](const InputOrigin& origin) {
    return origin.reverse;
  };
  if (!bothStrands_ &&
      std::any_of(origins_.begin(), origins_.end(), isReverse)) {
    throw FileError(tablePath,
                    "some inputs are there on both strands, and some are not");
  }
}

void warnOfOneStrand(const MergedInputs& inputs) {
  if (inputs.bothStrands()) return;
  fmt::print(stderr,
             "palvor-kit: note: the folder does not hold both strands of every "
             "sequence: what is deposited on opposite strands looks unrelated "
             "(see prepare --strands both)\n");
}

}  // namespace kit
