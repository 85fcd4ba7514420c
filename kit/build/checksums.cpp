#include "kit/build/checksums.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>

#include "kit/file_error.h"
#include "kit/output_file.h"
#include "kit/work_progress.h"
#include "kit/workers.h"

namespace kit {
namespace {

constexpr size_t kBlock = 1 << 20;  // bytes read at once

class OpenFile {
 public:
  explicit OpenFile(const std::string& path)
      : path_(path), descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) fail();
  }
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  uint64_t size() const {
    struct stat status = {};
    if (::fstat(descriptor_, &status) != 0) fail();
    if (!S_ISREG(status.st_mode)) throw FileError(path_, "not a regular file");
    return static_cast<uint64_t>(status.st_size);
  }

  // Fewer bytes than asked for only at the end, where there are none.
  size_t read(std::vector<char>& block) const {
    for (;;) {
      const ssize_t count = ::read(descriptor_, block.data(), block.size());
      if (count >= 0) return static_cast<size_t>(count);
      if (errno != EINTR) fail();
    }
  }

 private:
  [[noreturn]] void fail() const {
    throw FileError(path_, std::strerror(errno));
  }

  std::string path_;
  int descriptor_;
};

class Sha256 {
 public:
  Sha256() : context_(EVP_MD_CTX_new(), EVP_MD_CTX_free) {
    test(context_ ? EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr)
                  : 0);
  }

  void add(const char* bytes, size_t size) {
    test(EVP_DigestUpdate(context_.get(), bytes, size));
  }

  std::string digest() {
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    test(EVP_DigestFinal_ex(context_.get(), bytes, &size));
    std::string text;
    for (unsigned i = 0; i < size; i++) text += fmt::format("{:02x}", bytes[i]);
    return text;
  }

 private:
  static void test(int success) {
    if (success != 1) throw std::runtime_error("no SHA-256 in libcrypto");
  }

  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
};

StoredFile sumFile(const std::string& path, std::vector<char>& block,
                   const std::function<void(uint64_t)>& advance) {
  const OpenFile file(path);
  StoredFile stored;
  Sha256 sum;
  while (const size_t size = file.read(block)) {
    sum.add(block.data(), size);
    stored.bytes += size;
    advance(size);
  }
  stored.sha256 = sum.digest();
  return stored;
}

}  // namespace

std::vector<StoredFile> sumFiles(const std::string& start,
                                 const std::vector<std::string>& files,
                                 const SummingMeans& means) {
  std::vector<uint64_t> sizes;
  sizes.reserve(files.size());
  for (const std::string& file : files) {
    sizes.push_back(OpenFile(start + file).size());
  }
  const uint64_t all = std::accumulate(sizes.begin(), sizes.end(), uint64_t{0});
  // The largest first, so that no thread is left alone with one.
  std::vector<size_t> turns(files.size());
  std::iota(turns.begin(), turns.end(), size_t{0});
  std::ranges::stable_sort(turns, std::greater<>(),
                           [&](size_t i) { return sizes[i]; });
  std::vector<StoredFile> stored(files.size());
  std::atomic<size_t> next = 0;
  WorkProgress progress(means.what, all, means.progress);
  const auto advance = [&](uint64_t bytes) { progress.add(bytes); };
  runWorkers(means.jobs, [&] {
    std::vector<char> block(kBlock);
    for (size_t turn = next++; turn < turns.size(); turn = next++) {
      const size_t i = turns[turn];
      stored[i] = sumFile(start + files[i], block, advance);
      stored[i].file = files[i];
    }
    return false;
  });
  return stored;
}

std::vector<std::string> namesOf(const std::vector<StoredFile>& files) {
  std::vector<std::string> names;
  names.reserve(files.size());
  for (const StoredFile& file : files) names.push_back(file.file);
  return names;
}

void writeSums(const std::vector<StoredFile>& files, const std::string& path) {
  std::string text;
  for (const StoredFile& file : files) {
    text += fmt::format("{}  {}\n", file.sha256, file.file);
  }
  OutputFile sums(path);
  sums.write(text.data(), text.size());
  sums.commit();
}

}  // namespace kit
