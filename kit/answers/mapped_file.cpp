#include "kit/answers/mapped_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kit {
namespace {

// An open file, closed at the end of its scope.
class OpenFile {
 public:
  // To open a pipe must not wait for its writer: it is refused below.
  explicit OpenFile(const std::string& path)
      : path_(path),
        descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ < 0) throw FileError(path, std::strerror(errno));
  }
  ~OpenFile() { ::close(descriptor_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int descriptor() const { return descriptor_; }

  uint64_t size() const {
    struct stat status = {};
    if (::fstat(descriptor_, &status) != 0) {
      throw FileError(path_, std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) throw FileError(path_, "no regular file");
    return static_cast<uint64_t>(status.st_size);
  }

 private:
  const std::string& path_;
  int descriptor_;
};

}  // namespace

uint64_t fileSize(const std::string& path) { return OpenFile(path).size(); }

const void* mapFile(const std::string& path, uint64_t bytes) {
  const OpenFile file(path);
  const uint64_t size = file.size();
  if (size < bytes) {
    throw FileError(path,
                    fmt::format("has {} bytes, expected {}", size, bytes));
  }
  void* memory =
      ::mmap(nullptr, bytes, PROT_READ, MAP_SHARED, file.descriptor(), 0);
  if (memory == MAP_FAILED) throw FileError(path, std::strerror(errno));
  // Advice that is not taken costs time only.
  ::madvise(memory, bytes, MADV_RANDOM);
  return memory;
}

void unmapFile(const void* memory, uint64_t bytes) {
  ::munmap(const_cast<void*>(memory), bytes);
}

}  // namespace kit
