// Files, and what reading and writing them takes.

#ifndef PALVOR_IO_FILES_H_
#define PALVOR_IO_FILES_H_

#include <cstdint>
#include <string>
#include <utility>

namespace palvor {

// Wall-clock milliseconds spent in reads and in writes: each call adds the
// difference of two truncated readings.
struct IoTime {
  int64_t read = 0;
  int64_t write = 0;
};

// An open descriptor, closed when its owner goes. Nothing here throws: a call
// that fails says so by its result and leaves its reason in errno.
class File {
 public:
  File() = default;
  explicit File(int descriptor) : descriptor_(descriptor) {}
  File(File&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  File& operator=(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File();

  // Opens a file to read. Pipes, devices and sockets, which may keep a reader
  // waiting or never end, are refused.
  static File openInput(const std::string& path);

  // Opens a file to write: created if missing, with permissions 0644, and
  // emptied.
  static File create(const std::string& path);

  bool isOpen() const { return descriptor_ >= 0; }

  // Reads up to `bytes` bytes (below 2^31) from an offset on. Returns how many,
  // fewer only at the end of the file, or a negative value on failure.
  int64_t readAt(void* buffer, int64_t bytes, int64_t offset,
                 IoTime& time) const;

  // Writes `bytes` bytes in pieces of at most 4 MiB. Returns the sum of the
  // pieces' results, which is `bytes` only if all went well: a failed piece
  // counts as -1, a short one is not continued, and leaves errno 0.
  int64_t write(const void* buffer, int64_t bytes, IoTime& time) const;

  // The size in bytes, and whether it is a regular file.
  struct Status {
    int64_t size;
    bool regular;
  };
  // False on failure.
  bool examine(Status& status) const;

  // Negative on failure: some file systems report a failed write only here.
  int close();

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

// Whether `path` is a pipe, a device or a socket. Sets errno if so.
bool isStream(const std::string& path);

// Size of the file at a path in bytes, negative on failure.
int64_t fileSize(const std::string& path);

// Lifts the limit of open files as far as the process may.
void raiseDescriptorLimit();

}  // namespace palvor

#endif  // PALVOR_IO_FILES_H_
