#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include <exception>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "kit/sequences/compressed_sources.h"

namespace kit {
namespace {

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
      file_->fail("something else follows the compressed data");
    }
  }

  [[noreturn]] void fail() {
    if (readFailure_) std::rethrow_exception(readFailure_);
    const char* reason = archive_error_string(archive_.get());
    file_->fail(fmt::format("damaged or incomplete compressed data: {}",
                            reason != nullptr ? reason : "no reason given"));
  }

  std::unique_ptr<SourceFile> file_;
  std::unique_ptr<archive, Free> archive_;
  std::exception_ptr readFailure_;
  bool begun_ = false;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<ByteSource> archiveSource(std::unique_ptr<SourceFile> file) {
  return std::make_unique<ArchiveSource>(std::move(file));
}

}  // namespace kit
