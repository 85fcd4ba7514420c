#include "kit/answers/merged_inputs.h"

#include <fmt/format.h>

#include <cstdio>
#include <numeric>

#include "kit/file_error.h"
#include "kit/record_file.h"

namespace kit {
namespace {

bool areInPairs(const std::vector<InputOrigin>& origins) {
  if (origins.size() % 2 != 0) return false;
  for (size_t i = 0; i < origins.size(); i += 2) {
    const InputOrigin& a = origins[i];
    const InputOrigin& b = origins[i + 1];
    if (a.reverse || !b.reverse || a.file != b.file ||
        a.sequence != b.sequence || a.offset != b.offset ||
        a.length != b.length) {
      return false;
    }
  }
  return !origins.empty();
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
  bothStrands_ = areInPairs(origins_);
}

void warnOfOneStrand(const MergedInputs& inputs) {
  if (inputs.bothStrands()) return;
  fmt::print(stderr,
             "palvor-kit: note: the folder does not hold both strands of every "
             "sequence: what is deposited on opposite strands looks unrelated "
             "(see prepare --strands both)\n");
}

}  // namespace kit
