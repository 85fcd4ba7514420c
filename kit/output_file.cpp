#include "kit/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "kit/file_error.h"

namespace kit {
namespace {

constexpr size_t kBufferBytes = 1 << 20;

bool isReplaceable(const std::string& path) {
  struct stat there = {};
  return ::stat(path.c_str(), &there) != 0 || S_ISREG(there.st_mode);
}

}  // namespace

std::string behindLinks(const std::string& path) {
  std::error_code failure;
  const auto target = std::filesystem::canonical(path, failure);
  return failure ? path : target.string();
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

OutputFile::OutputFile(const std::string& path, const std::string& tag)
    : path_(path), part_(path + (tag.empty() ? "" : "." + tag) + kPartSuffix) {
  if (!isReplaceable(path)) {
    throw FileError(path, "is there, and no regular file");
  }
  descriptor_ =
      ::open(part_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor_ < 0) fail("can't create ");
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!part_.empty()) ::unlink(part_.c_str());
}

void OutputFile::allocate(uint64_t bytes) const {
  const auto size = static_cast<off_t>(bytes);
  if (bytes == 0 || ::fallocate(descriptor_, 0, 0, size) == 0) return;
  if (errno != EOPNOTSUPP) fail("can't have the room for ");
  if (::ftruncate(descriptor_, size) != 0) fail("can't make ");
}

void OutputFile::write(const void* bytes, size_t size) {
  const char* from = static_cast<const char*>(bytes);
  if (buffer_.capacity() == 0) buffer_.reserve(kBufferBytes + size);
  buffer_.insert(buffer_.end(), from, from + size);
  if (buffer_.size() >= kBufferBytes) flush();
}

void OutputFile::flush() {
  if (!writeAll(descriptor_, {buffer_.data(), buffer_.size()})) {
    fail("can't write ");
  }
  buffer_.clear();
}

void OutputFile::writeAt(uint64_t offset, const void* bytes,
                         size_t size) const {
  const char* from = static_cast<const char*>(bytes);
  while (size > 0) {
    const ssize_t written =
        ::pwrite(descriptor_, from, size, static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail("can't write ");
    from += written;
    offset += static_cast<uint64_t>(written);
    size -= static_cast<size_t>(written);
  }
}

void OutputFile::commit() {
  flush();
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) < 0) fail("can't write ");
  if (std::rename(part_.c_str(), path_.c_str()) < 0) fail("can't name ");
  part_.clear();
}

void OutputFile::fail(const char* what) const {
  throw std::system_error(errno, std::generic_category(), what + path_);
}

}  // namespace kit
