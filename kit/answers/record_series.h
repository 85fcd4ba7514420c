// The records of a merged array, or of its LCP file: in one file, as palvor and
// palvor-kit merge and join write it, or in the parts of all ranges of a plan,
// which palvor-kit merge --range writes. Parts one after the other are the
// whole file.

#ifndef PALVOR_KIT_ANSWERS_RECORD_SERIES_H_
#define PALVOR_KIT_ANSWERS_RECORD_SERIES_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kit/answers/mapped_file.h"
#include "kit/record_file.h"

namespace kit {

struct SeriesFiles {
  std::vector<std::string> paths;
  std::string name;  // of all of them, for messages
};

// <base>.<kind>, or if there is no merged array but a plan, its parts. Throws
// FileError if one is missing, and says with what option palvor writes the
// file.
//   kind  "stpsa" or "stlcp"
SeriesFiles seriesFiles(const std::string& base, const std::string& kind,
                        const char* option);

// Which of several files a record of a series is in.
class SeriesPlaces {
 public:
  void add(uint64_t records) { firsts_.push_back(firsts_.back() + records); }

  uint64_t records() const { return firsts_.back(); }

  // The file of a record, which must be there.
  size_t fileOf(uint64_t record) const {
    if (firsts_.size() == 2) return 0;
    const auto behind =
        std::upper_bound(firsts_.begin(), firsts_.end(), record);
    return static_cast<size_t>(behind - firsts_.begin()) - 1;
  }

  // Number of a file's first record, and of the one behind its last.
  uint64_t firstOf(size_t file) const { return firsts_[file]; }
  uint64_t endOf(size_t file) const { return firsts_[file + 1]; }

 private:
  std::vector<uint64_t> firsts_ = {0};
};

// Read block by block. One file is open at a time, since there may be more than
// a process can have open; so two threads need two of these.
class StoredSeries {
 public:
  // Looks how large the files are. Throws FileError, as all functions.
  StoredSeries(const SeriesFiles& files, size_t recordSize);

  // The same files, for another thread.
  StoredSeries reopened() const {
    return {name_, paths_, recordSize_, places_};
  }

  const std::string& name() const { return name_; }
  uint64_t records() const { return places_.records(); }

  // Reads records first to first + count - 1, which must be there.
  void read(uint64_t first, size_t count, void* to) const;

 private:
  StoredSeries(std::string name, std::vector<std::string> paths,
               size_t recordSize, SeriesPlaces places)
      : name_(std::move(name)),
        paths_(std::move(paths)),
        recordSize_(recordSize),
        places_(std::move(places)) {}

  std::string name_;
  std::vector<std::string> paths_;
  size_t recordSize_;
  SeriesPlaces places_;
  // The file that was read last.
  mutable std::unique_ptr<StoredBytes> open_;
  mutable size_t opened_ = 0;
};

// Mapped into memory.
template <typename Record>
class MappedSeries {
 public:
  // Maps the files. Throws FileError.
  explicit MappedSeries(const SeriesFiles& files) : name_(files.name) {
    for (const std::string& path : files.paths) {
      files_.push_back(std::make_unique<MappedRecords<Record>>(path));
      places_.add(files_.back()->size());
    }
  }

  const std::string& name() const { return name_; }
  uint64_t size() const { return places_.records(); }

  // A record, which must be there.
  const Record& operator[](uint64_t index) const {
    const size_t file = places_.fileOf(index);
    return (*files_[file])[index - places_.firstOf(file)];
  }

 private:
  std::string name_;
  std::vector<std::unique_ptr<MappedRecords<Record>>> files_;
  SeriesPlaces places_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_RECORD_SERIES_H_
