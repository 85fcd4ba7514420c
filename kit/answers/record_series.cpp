#include "kit/answers/record_series.h"

#include <fmt/format.h>

#include "kit/file_error.h"
#include "kit/range_plan.h"

namespace kit {

SeriesFiles seriesFiles(const std::string& base, const std::string& kind,
                        const char* option) {
  const std::string whole = base + "." + kind;
  if (isThere(base + ".stpsa") || !isThere(planPath(base))) {
    if (isThere(whole)) return {{whole}, whole};
    throw FileError(whole,
                    fmt::format("not there; palvor {} writes it", option));
  }
  SeriesFiles files;
  const size_t ranges = readPlan(base).ranges.size();
  for (size_t r = 0; r < ranges; r++) {
    files.paths.push_back(partPath(base, r) + "." + kind);
    if (isThere(files.paths.back())) continue;
    throw FileError(files.paths.back(),
                    fmt::format("not there; palvor-kit merge --range {} writes "
                                "it",
                                r));
  }
  files.name = ranges == 1 ? files.paths[0]
                           : fmt::format("{} to {}", files.paths.front(),
                                         files.paths.back());
  return files;
}

StoredSeries::StoredSeries(const SeriesFiles& files, size_t recordSize)
    : name_(files.name), paths_(files.paths), recordSize_(recordSize) {
  for (size_t i = 0; i < paths_.size(); i++) {
    open_ = std::make_unique<StoredBytes>(paths_[i], recordSize);
    opened_ = i;
    places_.add(open_->records());
  }
}

void StoredSeries::read(uint64_t first, size_t count, void* to) const {
  auto* bytes = static_cast<char*>(to);
  while (count > 0) {
    const size_t file = places_.fileOf(first);
    if (!open_ || file != opened_) {
      open_ = std::make_unique<StoredBytes>(paths_[file], recordSize_);
      opened_ = file;
    }
    const size_t here = std::min<uint64_t>(count, places_.endOf(file) - first);
    const uint64_t at = first - places_.firstOf(file);
    if (at + here > open_->records()) {
      throw FileError(paths_[file], "was changed meanwhile");
    }
    open_->read(at, here, bytes);
    first += here;
    count -= here;
    bytes += here * recordSize_;
  }
}

}  // namespace kit
