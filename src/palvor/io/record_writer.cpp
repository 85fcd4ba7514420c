#include "palvor/io/record_writer.h"

#include <cerrno>
#include <cstring>

namespace palvor {

bool RecordWriter::noteFailure(const char* reason) {
  if (blame_.file.empty()) blame_ = {path_, reason};
  return false;
}

bool RecordWriter::create() {
  file_ = File::create(path_);
  return file_.isOpen() || noteFailure(std::strerror(errno));
}

int64_t RecordWriter::write(const void* records, int64_t bytes) {
  const int64_t written = file_.write(records, bytes, *time_);
  if (written != bytes) {
    // A write that stops short leaves no reason behind: the next one tells it.
    if (errno == 0) file_.write(records, 1, *time_);
    noteFailure(errno != 0 ? std::strerror(errno) : "written in part only");
  }
  return written;
}

bool RecordWriter::close() {
  return file_.close() >= 0 || noteFailure(std::strerror(errno));
}

}  // namespace palvor
