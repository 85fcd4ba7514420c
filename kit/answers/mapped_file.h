// Files mapped into memory. Whoever maps a file relies on nobody cutting it
// short meanwhile: the system would end the program.

#ifndef PALVOR_KIT_ANSWERS_MAPPED_FILE_H_
#define PALVOR_KIT_ANSWERS_MAPPED_FILE_H_

#include <fmt/format.h>

#include <cstdint>
#include <string>

#include "kit/file_error.h"

namespace kit {

// Maps the first `bytes` bytes, 1 or more, of a regular file, to be read in any
// order. Throws FileError if it has fewer or cannot be mapped.
const void* mapFile(const std::string& path, uint64_t bytes);
void unmapFile(const void* memory, uint64_t bytes);

// Bytes of a regular file. Throws FileError.
uint64_t fileSize(const std::string& path);

// A file that is an array of records.
template <typename Record>
class MappedRecords {
 public:
  // Maps all of the file. Throws FileError if its size is not a whole number of
  // records, or as mapFile.
  explicit MappedRecords(const std::string& path) : bytes_(fileSize(path)) {
    if (bytes_ % sizeof(Record) != 0) {
      throw FileError(path, fmt::format("{} bytes are not a whole number of "
                                        "records of {} bytes",
                                        bytes_, sizeof(Record)));
    }
    if (bytes_ > 0)
      records_ = static_cast<const Record*>(mapFile(path, bytes_));
  }
  ~MappedRecords() {
    if (records_ != nullptr) unmapFile(records_, bytes_);
  }
  MappedRecords(const MappedRecords&) = delete;
  MappedRecords& operator=(const MappedRecords&) = delete;

  uint64_t size() const { return bytes_ / sizeof(Record); }
  const Record& operator[](uint64_t index) const { return records_[index]; }

 private:
  uint64_t bytes_;
  const Record* records_ = nullptr;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MAPPED_FILE_H_
