#include "run/lengths.h"

#include <algorithm>
#include <cstdio>

#include "run/values.h"
#include "support/files.h"
#include "support/report.h"

namespace {

// Why a table could not be filled.
constexpr const char* kTooShort = "shorter than the number of inputs asks for";

struct Reading {
  bool opened = false;
  bool failed = false;  // by the system, not by the file's end
  int entries = 0;      // whole entries read
};

// Reads up to `n` entries into `table` with one block read, and blames the file
// if the system refuses.
Reading readEntries(const char* path, unsigned* table, int n) {
  std::FILE* file = IsStream(path) ? nullptr : std::fopen(path, "rb");
  if (file == nullptr) {
    blame(path);
    return {};
  }
  const size_t got = std::fread(table, 4, static_cast<size_t>(n), file);
  const bool failed = std::ferror(file) != 0;
  if (failed) blame(path);
  std::fclose(file);
  return {true, failed, static_cast<int>(got)};
}

// Whether all `n` entries were read; if not, the file was blamed.
bool holdsEntries(const Reading& read, const char* path, int n) {
  if (read.entries == n) return true;
  if (!read.failed) blame(path, kTooShort);
  return false;
}

}  // namespace

void readPartitionInfo(const char* lengthsPath, const char* blengthsPath,
                       const char* plengthsPath, unsigned* lengthsTable,
                       unsigned* blengthsTable, unsigned* plengthsTable,
                       int n) {
  if (lengthsTable != nullptr) {
    const Reading read = readEntries(lengthsPath, lengthsTable, n);
    if (!read.opened) die("could not open lengths file \"%s\"\n", lengthsPath);
    if (!holdsEntries(read, lengthsPath, n)) {
      die("Reading lengths of partitions - error \n");
    }
  }
  if (blengthsTable != nullptr) {
    const Reading read = readEntries(blengthsPath, blengthsTable, n);
    if (!read.opened) {
      die("Could not open binary lengths file \"%s\"\n", blengthsPath);
    }
    if (!holdsEntries(read, blengthsPath, n)) {
      die("Reading binary lengths of partitions - error \n");
    }
  }
  if (plengthsTable != nullptr) {
    // Never more than the table holds, were the file to grow meanwhile.
    const Reading read =
        readEntries(plengthsPath, plengthsTable, std::min(n, nparts));
    if (!read.opened) {
      die("Could not open partitions file \"%s\"\n", plengthsPath);
    }
    if (read.failed) {
      die("could not read partitions file \"%s\"\n", plengthsPath);
    }
  }
}
