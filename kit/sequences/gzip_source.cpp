#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "kit/sequences/compressed_sources.h"

namespace kit {
namespace {

constexpr size_t kMostAtOnce = size_t{256} * 1024;  // bytes

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
    stream_.avail_out = static_cast<uInt>(std::min(capacity, kMostAtOnce));
    const uInt wanted = stream_.avail_out;
    while (stream_.avail_out == wanted) {
      if (stream_.avail_in == 0 && !refill()) {
        if (inMember_) file_->fail("gzip data stop early");
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
        file_->fail(fmt::format(
            "damaged gzip data: {}",
            stream_.msg != nullptr ? stream_.msg : "no valid data"));
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

}  // namespace

std::unique_ptr<ByteSource> gzipSource(std::unique_ptr<SourceFile> file) {
  return std::make_unique<GzipSource>(std::move(file));
}

}  // namespace kit
