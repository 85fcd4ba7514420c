// A file that is an array of records, read a block at a time.

#ifndef PALVOR_KIT_RECORD_FILE_H_
#define PALVOR_KIT_RECORD_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kit {

// Whether there is a file, of whatever kind, at a path. Throws FileError if the
// system does not say.
bool isThere(const std::string& path);

// The bytes of a file, at any offset. Throws FileError.
class StoredBytes {
 public:
  // Opens a regular file whose size is a whole number of records.
  StoredBytes(const std::string& path, size_t recordSize);
  ~StoredBytes();
  StoredBytes(const StoredBytes&) = delete;
  StoredBytes& operator=(const StoredBytes&) = delete;

  const std::string& path() const { return path_; }
  uint64_t records() const { return records_; }

  // Reads records first to first + count - 1, which must be there.
  void read(uint64_t first, size_t count, void* to) const;

 private:
  std::string path_;
  size_t recordSize_;
  uint64_t records_ = 0;
  int descriptor_ = -1;
};

template <typename Record>
class RecordFile {
 public:
  explicit RecordFile(const std::string& path) : bytes_(path, sizeof(Record)) {}

  const std::string& path() const { return bytes_.path(); }
  uint64_t size() const { return bytes_.records(); }

  // Records `first` on, at most `count`, fewer only at the file's end.
  std::vector<Record> read(uint64_t first, uint64_t count) const {
    if (first >= size()) return {};
    const uint64_t rest = size() - first;
    std::vector<Record> records(count < rest ? count : rest);
    bytes_.read(first, records.size(), records.data());
    return records;
  }

 private:
  StoredBytes bytes_;
};

}  // namespace kit

#endif  // PALVOR_KIT_RECORD_FILE_H_
