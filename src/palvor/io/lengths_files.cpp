#include "palvor/io/lengths_files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "palvor/error.h"
#include "palvor/io/files.h"

namespace palvor {
namespace {

struct Reading {
  bool opened = false;
  bool failed = false;  // by the system, not by the file's end
  size_t entries = 0;   // whole entries read
  Blame blame;          // if it was not opened, or the system failed
};

// Reads up to `count` entries into a table with one block read.
Reading readEntries(const std::string& path, uint32_t* table, size_t count) {
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  const std::unique_ptr<std::FILE, Closer> file(
      isStream(path) ? nullptr : std::fopen(path.c_str(), "rb"));
  if (file == nullptr) return {false, false, 0, blameSystem(path)};
  const size_t got = std::fread(table, 4, count, file.get());
  if (std::ferror(file.get()) != 0) return {true, true, got, blameSystem(path)};
  return {true, false, got, {}};
}

// Fails with `text` if not all entries were read.
void expectAll(const Reading& read, const std::string& path, size_t count,
               const char* text) {
  if (read.entries == count) return;
  fail(read.failed ? read.blame
                   : Blame{path, "shorter than the number of inputs asks for"},
       "%s", text);
}

int countOf(int64_t bytes, const std::string& path, const char* file,
            const char* what) {
  if (bytes / 4 > INT_MAX) {
    fail("%s file %s: %lld %s are too many", file, path.c_str(),
         static_cast<long long>(bytes / 4), what);
  }
  return static_cast<int>(bytes / 4);
}

int countInputs(const DataPaths& paths) {
  const int64_t size = fileSize(paths.lengths);
  if (size < 0) {
    fail(blameSystem(paths.lengths), "could not access lengths file %s",
         paths.lengths.c_str());
  }
  return countOf(size, paths.lengths, "lengths", "inputs");
}

// Whether a path that cannot be examined leads to no file that can be had.
bool leadsNowhere(int reason) {
  return reason == ENOENT || reason == ENOTDIR || reason == ELOOP ||
         reason == EACCES;
}

int countPartitions(const DataPaths& paths, int mostInputs) {
  const int64_t size = fileSize(paths.partitions);
  // Out of reach, it means none, as if it were missing or empty. If the system
  // failed, it might have named some.
  if (size < 0 && !leadsNowhere(errno)) {
    fail("could not access partitions file %s: %s", paths.partitions.c_str(),
         std::strerror(errno));
  }
  const int count =
      size < 0 ? 0
               : countOf(size, paths.partitions, "partitions", "partitions");
  if (count != 0 && mostInputs != 0) {
    fail(
        "option -N caps the inputs, not the partitions that name them: it "
        "cannot be used with the partitions file %s",
        paths.partitions.c_str());
  }
  return count;
}

// Zeroes the entries beyond the first `count`. Whether one of them, but the
// last, was not 0.
bool leaveOut(std::vector<uint32_t>& entries, size_t count) {
  bool found = false;
  for (size_t k = count; k < entries.size(); k++) {
    if (k + 1 < entries.size() && entries[k] != 0) found = true;
    entries[k] = 0;
  }
  return found;
}

}  // namespace

Lengths readLengths(const DataPaths& paths, int mostInputs) {
  int inputs = countInputs(paths);
  if (mostInputs != 0) inputs = std::min(inputs, mostInputs);
  const auto count = static_cast<size_t>(inputs);
  Lengths lengths;
  lengths.partitions.resize(
      static_cast<size_t>(countPartitions(paths, mostInputs)));
  lengths.characters.resize(count);
  lengths.bits.resize(count);

  Reading read = readEntries(paths.lengths, lengths.characters.data(), count);
  if (!read.opened) {
    fail(read.blame, "could not open lengths file \"%s\"",
         paths.lengths.c_str());
  }
  expectAll(read, paths.lengths, count,
            "Reading lengths of partitions - error ");
  read = readEntries(paths.bitLengths, lengths.bits.data(), count);
  if (!read.opened) {
    fail(read.blame, "Could not open binary lengths file \"%s\"",
         paths.bitLengths.c_str());
  }
  expectAll(read, paths.bitLengths, count,
            "Reading binary lengths of partitions - error ");
  if (lengths.partitions.empty()) return lengths;

  read = readEntries(paths.partitions, lengths.partitions.data(),
                     lengths.partitions.size());
  if (!read.opened) {
    fail(read.blame, "Could not open partitions file \"%s\"",
         paths.partitions.c_str());
  }
  if (read.failed) {
    fail(read.blame, "could not read partitions file \"%s\"",
         paths.partitions.c_str());
  }
  lengths.leftPartitionOut = leaveOut(lengths.partitions, count);
  return lengths;
}

}  // namespace palvor
