#include "kit/check/check_leftovers.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "kit/file_error.h"
#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

// The number of a tree's file of this prefix.
std::optional<uint64_t> treeNumber(std::string_view name,
                                   const std::string& prefix) {
  constexpr std::string_view kEnd = ".stree";
  if (!name.starts_with(prefix + "_") || !name.ends_with(kEnd)) return {};
  name.remove_prefix(prefix.size() + 1);
  name.remove_suffix(kEnd.size());
  uint64_t number = 0;
  const auto [end, error] = std::from_chars(name.begin(), name.end(), number);
  if (error != std::errc() || end != name.end()) return {};
  return fmt::format("{}", number) == name ? std::optional(number)
                                           : std::nullopt;
}

std::set<uint64_t> treesBeyond(const std::string& path, uint64_t listed) {
  const fs::path folder = fs::path(path).parent_path();
  const std::string prefix = fs::path(path).filename().string();
  std::set<uint64_t> trees;
  std::error_code failure;
  fs::directory_iterator entry(folder, failure);
  while (!failure && entry != fs::directory_iterator()) {
    const auto tree = treeNumber(entry->path().filename().string(), prefix);
    if (tree && *tree >= listed) trees.insert(*tree);
    entry.increment(failure);
  }
  if (failure) throw FileError(folder.string(), failure.message());
  return trees;
}

// When a file was made, if the system knows, and when it was written last.
struct FileTimes {
  std::optional<std::pair<int64_t, uint32_t>> made;  // seconds, nanoseconds
  std::pair<int64_t, uint32_t> written;
};

// Nothing if the file is not there.
std::optional<FileTimes> timesOf(const std::string& path) {
  struct statx status = {};
  if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) !=
      0) {
    if (errno == ENOENT) return std::nullopt;
    throw FileError(path, std::strerror(errno));
  }
  FileTimes times;
  times.written = {status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec};
  if ((status.stx_mask & STATX_BTIME) != 0) {
    times.made = {status.stx_btime.tv_sec, status.stx_btime.tv_nsec};
  }
  return times;
}

// A copy, made file by file, may have the empty file after the array; but it is
// not written again after it is made.
bool emptiedSince(const std::string& dividers, const std::string& array) {
  const auto emptied = timesOf(dividers);
  const auto finished = timesOf(array);
  if (!emptied || !finished || emptied->written <= finished->written) {
    return false;
  }
  const bool copied = emptied->made && *emptied->made > finished->written;
  return !copied;
}

}  // namespace

void checkLeftovers(const std::string& path, FaultLog& faults) {
  const std::string dividersPath = path + ".stdiv";
  const std::string arrayPath = path + ".stpsa";
  uint64_t listed = 0;
  if (isThere(dividersPath)) {
    listed = RecordFile<DividerRecord>(dividersPath).size();
    if (listed == 0 && emptiedSince(dividersPath, arrayPath)) {
      faults.add(dividersPath,
                 fmt::format("emptied after {} was written, by a run for trees "
                             "that did not finish",
                             arrayPath));
    }
  }
  for (const uint64_t tree : treesBeyond(path, listed)) {
    faults.add(fmt::format("{}_{}.stree", path, tree),
               fmt::format("not one of the {} trees that {} lists, but left by "
                           "another run",
                           listed, dividersPath));
  }
}

}  // namespace kit
