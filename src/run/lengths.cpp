#include "run/lengths.h"

#include <algorithm>
#include <cstdio>

#include "run/values.h"
#include "support/report.h"

namespace {

struct Reading {
  bool opened = false;
  bool failed = false;  // by the system, not by the file's end
  int entries = 0;      // whole entries read
};

// Reads up to `n` entries into `table` with one block read.
Reading readEntries(const char* path, unsigned* table, int n) {
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return {};
  const size_t got = std::fread(table, 4, static_cast<size_t>(n), file);
  const bool failed = std::ferror(file) != 0;
  std::fclose(file);
  return {true, failed, static_cast<int>(got)};
}

}  // namespace

void readPartitionInfo(const char* lengthsPath, const char* blengthsPath,
                       const char* plengthsPath, unsigned* lengthsTable,
                       unsigned* blengthsTable, unsigned* plengthsTable,
                       int n) {
  if (lengthsTable != nullptr) {
    const Reading read = readEntries(lengthsPath, lengthsTable, n);
    if (!read.opened) die("could not open lengths file \"%s\"\n", lengthsPath);
    if (read.entries < n) die("Reading lengths of partitions - error \n");
  }
  if (blengthsTable != nullptr) {
    const Reading read = readEntries(blengthsPath, blengthsTable, n);
    if (!read.opened) {
      die("Could not open binary lengths file \"%s\"\n", blengthsPath);
    }
    if (read.entries < n) {
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
