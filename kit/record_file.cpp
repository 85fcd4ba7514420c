#include "kit/record_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "kit/file_error.h"

namespace kit {
namespace {

[[noreturn]] void failOn(const std::string& path) {
  throw FileError(path, std::strerror(errno));
}

}  // namespace

bool isThere(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR) return false;
  failOn(path);
}

StoredBytes::StoredBytes(const std::string& path, size_t recordSize)
    : path_(path), recordSize_(recordSize) {
  // To open a pipe must not wait for its writer: it is refused below.
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) failOn(path);
  struct stat status = {};
  const bool known = ::fstat(descriptor_, &status) == 0;
  const auto size = static_cast<uint64_t>(status.st_size);
  if (known && S_ISREG(status.st_mode) && size % recordSize == 0) {
    records_ = size / recordSize;
    return;
  }
  ::close(descriptor_);
  if (!known || !S_ISREG(status.st_mode)) {
    throw FileError(path, "no regular file");
  }
  throw FileError(path,
                  fmt::format("{} bytes are not a whole number of records "
                              "of {} bytes",
                              size, recordSize));
}

StoredBytes::~StoredBytes() { ::close(descriptor_); }

void StoredBytes::read(uint64_t first, size_t count, void* to) const {
  char* next = static_cast<char*>(to);
  size_t wanted = count * recordSize_;
  auto offset = static_cast<off_t>(first * recordSize_);
  while (wanted > 0) {
    const ssize_t got = ::pread(descriptor_, next, wanted, offset);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) failOn(path_);
    if (got == 0) throw FileError(path_, "became shorter meanwhile");
    next += got;
    offset += got;
    wanted -= static_cast<size_t>(got);
  }
}

}  // namespace kit
