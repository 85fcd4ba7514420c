#include "palvor/io/files.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "palvor/io/clocks.h"

namespace palvor {
namespace {

constexpr int64_t kWriteChunk = 4 << 20;  // bytes

// Adds the wall-clock time between its making and its end to a sum.
class Timed {
 public:
  explicit Timed(int64_t& sum) : sum_(sum), start_(wallMilliseconds()) {}
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;
  ~Timed() {
    // Closing is no part of it, but may come after it: errno stays.
    const int reason = errno;
    sum_ += wallMilliseconds() - start_;
    errno = reason;
  }

 private:
  int64_t& sum_;
  int64_t start_;
};

}  // namespace

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    close();
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

File::~File() { close(); }

File File::openInput(const std::string& path) {
  return isStream(path) ? File() : File(open(path.c_str(), O_RDONLY));
}

File File::create(const std::string& path) {
  return File(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644));
}

int64_t File::readAt(void* buffer, int64_t bytes, int64_t offset,
                     IoTime& time) const {
  const Timed timed(time.read);
  char* to = static_cast<char*>(buffer);
  int64_t got = 0;
  // One call brings at most 0x7ffff000 bytes on Linux: a read that stops short
  // has not met the end of the file unless the next one brings nothing.
  while (got < bytes) {
    const ssize_t read = pread(descriptor_, to + got,
                               static_cast<size_t>(bytes - got), offset + got);
    if (read < 0) return read;
    got += read;
    if (read < 0x7ffff000) break;
  }
  return got;
}

int64_t File::write(const void* buffer, int64_t bytes, IoTime& time) const {
  const Timed timed(time.write);
  const char* next = static_cast<const char*>(buffer);
  int64_t total = 0;
  errno = 0;
  while (bytes > 0) {
    const int64_t piece = std::min(bytes, kWriteChunk);
    total += ::write(descriptor_, next, static_cast<size_t>(piece));
    next += piece;
    bytes -= piece;
  }
  return total;
}

bool File::examine(Status& status) const {
  struct stat found = {};
  if (fstat(descriptor_, &found) < 0) return false;
  status = {found.st_size, S_ISREG(found.st_mode)};
  return true;
}

int File::close() {
  if (descriptor_ < 0) return 0;
  return ::close(std::exchange(descriptor_, -1));
}

bool isStream(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return false;  // opening it says why
  if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) return false;
  errno = ESPIPE;
  return true;
}

int64_t fileSize(const std::string& path) {
  struct stat status = {};
  const int result = stat(path.c_str(), &status);
  return result < 0 ? result : status.st_size;
}

void raiseDescriptorLimit() {
  struct rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace palvor
