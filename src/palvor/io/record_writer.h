// An output file of records, written from its beginning to its end.

#ifndef PALVOR_IO_RECORD_WRITER_H_
#define PALVOR_IO_RECORD_WRITER_H_

#include <cstdint>
#include <string>

#include "palvor/error.h"
#include "palvor/io/files.h"

namespace palvor {

// Its calls say whether they succeeded; `blame` names the file and the reason
// of the first failure, and the caller fails in words of its own.
class RecordWriter {
 public:
  // Times of writing are added to `time`, which must outlive the writer.
  RecordWriter(std::string path, IoTime& time)
      : path_(std::move(path)), time_(&time) {}

  // Creates the file, or empties it.
  bool create();
  bool isOpen() const { return file_.isOpen(); }

  // Returns how many bytes were written: `bytes` unless it failed (as
  // File::write).
  int64_t write(const void* records, int64_t bytes);

  bool close();

  const std::string& path() const { return path_; }
  const Blame& blame() const { return blame_; }

 private:
  bool noteFailure(const char* reason);

  std::string path_;
  IoTime* time_;
  File file_;
  Blame blame_;
};

}  // namespace palvor

#endif  // PALVOR_IO_RECORD_WRITER_H_
