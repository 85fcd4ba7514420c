#include "kit/sequences/byte_source.h"

#include <algorithm>
#include <utility>

#include "kit/sequences/compressed_sources.h"
#include "kit/sequences/source_file.h"

namespace kit {
namespace {

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

}  // namespace

std::unique_ptr<ByteSource> openByteSource(const std::string& path) {
  constexpr unsigned char kGzipMagic[] = {0x1f, 0x8b};
  auto file = std::make_unique<SourceFile>(path);
  if (file->beginsWith(kGzipMagic)) return gzipSource(std::move(file));
  if (file->beginsWithOneOf(">@\n\r")) {
    return std::make_unique<PlainSource>(std::move(file));
  }
  return archiveSource(std::move(file));
}

}  // namespace kit
