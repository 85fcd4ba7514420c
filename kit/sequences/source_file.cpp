#include "kit/sequences/source_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace kit {
namespace {

constexpr size_t kBlockBytes = size_t{256} * 1024;

}  // namespace

std::string sourceName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

SourceFile::SourceFile(const std::string& path)
    : path_(path), block_(kBlockBytes) {
  descriptor_ =
      path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) {
    throw std::system_error(errno, std::generic_category(),
                            fmt::format("can't open {}", path));
  }
}

SourceFile::~SourceFile() {
  if (descriptor_ > STDIN_FILENO) ::close(descriptor_);
}

bool SourceFile::beginsWith(std::span<const unsigned char> magic) {
  while (filled_ < magic.size()) {
    const size_t got = readMore();
    if (got == 0) return false;
  }
  return std::ranges::equal(
      magic, std::span<const char>(block_).first(magic.size()), {}, {},
      [](char c) { return static_cast<unsigned char>(c); });
}

bool SourceFile::beginsWithOneOf(std::string_view characters) {
  if (filled_ == 0) readMore();
  return filled_ > 0 && characters.find(block_[0]) != std::string_view::npos;
}

std::span<char> SourceFile::nextBlock() {
  if (filled_ == 0) readMore();
  const std::span<char> block(block_.data(), filled_);
  filled_ = 0;
  handedOut_ += block.size();
  return block;
}

size_t SourceFile::read(char* buffer, size_t capacity) {
  size_t got = std::min(filled_, capacity);
  if (got > 0) {
    std::memcpy(buffer, block_.data(), got);
    std::memmove(block_.data(), block_.data() + got, filled_ - got);
    filled_ -= got;
  } else {
    got = readTo(buffer, capacity);
  }
  handedOut_ += got;
  return got;
}

size_t SourceFile::size() const {
  struct stat status = {};
  const bool regular =
      ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  return regular ? static_cast<size_t>(status.st_size) : 0;
}

void SourceFile::fail(const std::string& reason) const {
  throw std::runtime_error(fmt::format("{}: {}", sourceName(path_), reason));
}

size_t SourceFile::readMore() {
  const size_t got = readTo(block_.data() + filled_, block_.size() - filled_);
  filled_ += got;
  return got;
}

size_t SourceFile::readTo(char* buffer, size_t capacity) const {
  ssize_t got = 0;
  do {
    got = ::read(descriptor_, buffer, capacity);
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    throw std::system_error(
        errno, std::generic_category(),
        fmt::format("{}: can't be read", sourceName(path_)));
  }
  return static_cast<size_t>(got);
}

}  // namespace kit
