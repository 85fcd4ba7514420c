#include "kit/build/unfinished_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "kit/build/checksums.h"
#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/record_file.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

void removeAll(const std::string& path) {
  std::error_code failure;
  fs::remove_all(path, failure);
  if (failure) throw FileError(path, failure.message());
}

// Whether it holds anything but what a build begins with or ends with.
bool isForeign(const ResultFolder& folder) {
  if (folder.isResult() || isThere(folder.path(kUnfinishedManifest))) {
    return false;
  }
  const std::string begun = std::string(kUnfinishedManifest) + kPartSuffix;
  for (const auto& entry : fs::directory_iterator(folder.path())) {
    if (entry.path().filename() != begun) return true;
  }
  return false;
}

}  // namespace

UnfinishedFolder::UnfinishedFolder(const ResultFolder& result)
    : result_(result), folder_(result.unfinished()) {
  createFolders(folder_.path());
  if (isForeign(folder_)) {
    throw FileError(folder_.path(), "is there, and was not left by a build");
  }
  descriptor_ =
      ::open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor_ < 0) throw FileError(folder_.path(), std::strerror(errno));
  // File systems that know no locks do without.
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    ::close(descriptor_);
    throw FileError(folder_.path(), "another run is at work in it");
  }
}

UnfinishedFolder::~UnfinishedFolder() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::optional<ResultManifest> UnfinishedFolder::found() const {
  const std::string path = folder_.path(kUnfinishedManifest);
  if (!isThere(path)) return std::nullopt;
  return readResultManifest(path);
}

void UnfinishedFolder::clear() const {
  // The manifest comes last, so that what is left is known for what it is.
  for (const auto& entry : fs::directory_iterator(folder_.path())) {
    if (entry.path().filename() != kUnfinishedManifest) {
      removeAll(entry.path().string());
    }
  }
  removeFile(folder_.path(kUnfinishedManifest));
}

void UnfinishedFolder::publish(const ResultManifest& manifest) {
  writeSums(manifest.outputs, folder_.path(kResultSums));
  sync();
  writeResultManifest(manifest, folder_.path(kResultManifest));
  removeFile(folder_.path(kUnfinishedManifest));
  sync();
  giveName();
  sync();
}

void UnfinishedFolder::giveName() const {
  const char* from = folder_.path().c_str();
  const char* to = result_.path().c_str();
  if (result_.isResult()) {
    // Both at once, so that one of them is always there.
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE) == 0) {
      removeAll(folder_.path());
      return;
    }
    removeAll(result_.path());  // where the file system cannot do that
  }
  if (std::rename(from, to) != 0) {
    throw FileError(result_.path(), std::strerror(errno));
  }
}

void UnfinishedFolder::remove() { removeAll(folder_.path()); }

// Has the disk hold what was written.
void UnfinishedFolder::sync() const {
  if (::syncfs(descriptor_) != 0) {
    throw FileError(folder_.path(), std::strerror(errno));
  }
}

}  // namespace kit
