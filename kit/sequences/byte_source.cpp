#include "kit/sequences/byte_source.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <span>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

namespace kit {
namespace {

constexpr size_t kBlockBytes = size_t{256} * 1024;

[[noreturn]] void failOn(const std::string& path, const std::string& reason) {
  throw std::runtime_error(fmt::format("{}: {}", sourceName(path), reason));
}

// The file as it is stored, in blocks, with a look at its first bytes.
class SourceFile {
 public:
  explicit SourceFile(const std::string& path) : path_(path) {
    descriptor_ =
        path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0) {
      throw std::system_error(errno, std::generic_category(),
                              fmt::format("can't open {}", path));
    }
  }

  ~SourceFile() {
    if (descriptor_ > STDIN_FILENO) ::close(descriptor_);
  }

  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  const std::string& path() const { return path_; }

  // Whether the file begins with `magic`; to be asked before nextBlock.
  bool beginsWith(std::span<const unsigned char> magic) {
    while (filled_ < magic.size()) {
      const size_t got = readMore();
      if (got == 0) return false;
    }
    for (size_t i = 0; i < magic.size(); i++) {
      if (static_cast<unsigned char>(block_[i]) != magic[i]) return false;
    }
    return true;
  }

  bool beginsWithOneOf(std::string_view characters) {
    if (filled_ == 0) readMore();
    return filled_ > 0 && characters.find(block_[0]) != std::string_view::npos;
  }

  // Writes the next bytes of the file to `buffer`; returns their number, 0 at
  // its end.
  size_t read(char* buffer, size_t capacity) {
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

  // The size of a regular file, else 0.
  size_t size() const {
    struct stat status = {};
    const bool regular =
        ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    return regular ? static_cast<size_t>(status.st_size) : 0;
  }

  // The next bytes of the file, valid until the next call; none at its end.
  std::span<char> nextBlock() {
    if (filled_ == 0) readMore();
    const std::span<char> block(block_.data(), filled_);
    filled_ = 0;
    handedOut_ += block.size();
    return block;
  }

  // Bytes that nextBlock has handed out so far.
  size_t handedOut() const { return handedOut_; }

 private:
  size_t readMore() {
    const size_t got = readTo(block_.data() + filled_, block_.size() - filled_);
    filled_ += got;
    return got;
  }

  size_t readTo(char* buffer, size_t capacity) const {
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

  std::string path_;
  int descriptor_ = -1;
  std::vector<char> block_ = std::vector<char>(kBlockBytes);
  size_t filled_ = 0;  // bytes of the block read and not yet handed out
  size_t handedOut_ = 0;
};

// gzip has a reader of its own because libarchive's does not verify the
// checksums, and a damaged genome that reads well is the worst kind.
class GzipSource : public ByteSource {
 public:
  explicit GzipSource(std::unique_ptr<SourceFile> file)
      : file_(std::move(file)) {
    constexpr int kWindowBits = 15, kGzipOnly = 16;
    if (inflateInit2(&stream_, kWindowBits + kGzipOnly) != Z_OK) {
      throw std::bad_alloc();
    }
  }

  ~GzipSource() override { inflateEnd(&stream_); }

  size_t read(char* buffer, size_t capacity) override {
    stream_.next_out = reinterpret_cast<Bytef*>(buffer);
    stream_.avail_out = static_cast<uInt>(std::min(capacity, kBlockBytes));
    const uInt wanted = stream_.avail_out;
    while (stream_.avail_out == wanted) {
      if (stream_.avail_in == 0 && !refill()) {
        if (inMember_) failOn(file_->path(), "gzip data stop early");
        return 0;
      }
      if (!inMember_) {
        skipPadding();
        if (stream_.avail_in == 0) continue;
        inflateReset(&stream_);
        inMember_ = true;
      }
      const int status = inflate(&stream_, Z_NO_FLUSH);
      if (status == Z_STREAM_END) {
        inMember_ = false;
      } else if (status == Z_MEM_ERROR) {
        throw std::bad_alloc();
      } else if (status != Z_OK) {
        failOn(file_->path(),
               fmt::format("damaged gzip data: {}", stream_.msg != nullptr
                                                        ? stream_.msg
                                                        : "no valid data"));
      }
    }
    return wanted - stream_.avail_out;
  }

  size_t storedBytes() const override { return file_->handedOut(); }

 private:
  bool refill() {
    const std::span<char> block = file_->nextBlock();
    stream_.next_in = reinterpret_cast<Bytef*>(block.data());
    stream_.avail_in = static_cast<uInt>(block.size());
    return !block.empty();
  }

  // Zeros after a member fill a block of some medium, and mean nothing.
  void skipPadding() {
    while (stream_.avail_in > 0 && *stream_.next_in == 0) {
      stream_.next_in++;
      stream_.avail_in--;
    }
  }

  std::unique_ptr<SourceFile> file_;
  z_stream stream_{};
  bool inMember_ = false;
};

// Text that is none that any of the others could begin with.
class PlainSource : public ByteSource {
 public:
  explicit PlainSource(std::unique_ptr<SourceFile> file)
      : file_(std::move(file)), size_(file_->size()) {}

  size_t read(char* buffer, size_t capacity) override {
    return file_->read(buffer, capacity);
  }

  size_t storedBytes() const override { return file_->handedOut(); }

  size_t bytesAhead() const override {
    return size_ - std::min(size_, storedBytes());
  }

 private:
  std::unique_ptr<SourceFile> file_;
  size_t size_;
};

// Everything else comes through libarchive.
class ArchiveSource : public ByteSource {
 public:
  explicit ArchiveSource(std::unique_ptr<SourceFile> file)
      : file_(std::move(file)), archive_(archive_read_new()) {
    if (archive_ == nullptr) throw std::bad_alloc();
    archive_read_support_filter_bzip2(archive_.get());
    archive_read_support_filter_xz(archive_.get());
    archive_read_support_filter_zstd(archive_.get());
    archive_read_support_format_raw(archive_.get());
    archive_read_support_format_empty(archive_.get());
  }

  size_t read(char* buffer, size_t capacity) override {
    if (!begun_) begin();
    if (ended_) return 0;
    const la_ssize_t got = archive_read_data(archive_.get(), buffer, capacity);
    if (got < 0) fail();
    if (got == 0) finish();
    return static_cast<size_t>(got);
  }

  size_t storedBytes() const override { return file_->handedOut(); }

 private:
  struct Free {
    void operator()(archive* a) const { archive_read_free(a); }
  };

  // libarchive is C: an exception must wait until its frames are gone.
  static la_ssize_t readBlock(archive*, void* self, const void** block) {
    auto* source = static_cast<ArchiveSource*>(self);
    try {
      const std::span<char> bytes = source->file_->nextBlock();
      *block = bytes.data();
      return static_cast<la_ssize_t>(bytes.size());
    } catch (...) {
      source->readFailure_ = std::current_exception();
      return ARCHIVE_FATAL;
    }
  }

  void begin() {
    begun_ = true;
    if (archive_read_open(archive_.get(), this, nullptr, readBlock, nullptr) !=
        ARCHIVE_OK) {
      fail();
    }
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(archive_.get(), &entry);
    if (status == ARCHIVE_EOF) {
      finish();
    } else if (status != ARCHIVE_OK) {
      fail();
    }
  }

  // A second stream whose first bytes are missing or wrong looks to libarchive
  // like the end, so see whether everything was used.
  void finish() {
    ended_ = true;
    const la_int64_t used = archive_filter_bytes(archive_.get(), -1);
    if (used < 0 || static_cast<size_t>(used) != file_->handedOut() ||
        !file_->nextBlock().empty()) {
      failOn(file_->path(), "something else follows the compressed data");
    }
  }

  [[noreturn]] void fail() {
    if (readFailure_) std::rethrow_exception(readFailure_);
    const char* reason = archive_error_string(archive_.get());
    failOn(file_->path(),
           fmt::format("damaged or incomplete compressed data: {}",
                       reason != nullptr ? reason : "no reason given"));
  }

  std::unique_ptr<SourceFile> file_;
  std::unique_ptr<archive, Free> archive_;
  std::exception_ptr readFailure_;
  bool begun_ = false;
  bool ended_ = false;
};

}  // namespace

std::string sourceName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

std::unique_ptr<ByteSource> openByteSource(const std::string& path) {
  constexpr unsigned char kGzipMagic[] = {0x1f, 0x8b};
  auto file = std::make_unique<SourceFile>(path);
  if (file->beginsWith(kGzipMagic)) {
    return std::make_unique<GzipSource>(std::move(file));
  }
  if (file->beginsWithOneOf(">@\n\r")) {
    return std::make_unique<PlainSource>(std::move(file));
  }
  return std::make_unique<ArchiveSource>(std::move(file));
}

}  // namespace kit
