#include "sources/strings.h"

#include <sys/mman.h>

#include <climits>

#include "run/options.h"
#include "sources/packing.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/paths.h"
#include "support/report.h"

constinit unsigned** binaryString = nullptr;

namespace {

[[noreturn]] void refuseSize(const char* path, int input, long long got,
                             int words) {
  if (got < 0) {
    blame(path);
  } else {
    blame(path, "shorter than its binary length says");
  }
  die("binary string %d reading error: read %d bytes, wanted %d words\n", input,
      static_cast<int>(got), words);
}

unsigned* readString(int fd, const char* path, int input, int words) {
  auto* string = uninitializedTable<unsigned>(words, path);
  const int wanted = 4 * words;
  const int got = FileRead(fd, string, wanted);
  if (got < wanted) refuseSize(path, input, got, words);
  if (string[words - 1] != 0) {
    blame(path, "its last word is not zero");
    die("bad binary file %d\n", input);
  }
  return string;
}

// Touching a mapping past the end of its file would end the process by a
// signal, so the size is looked at first.
unsigned* mapString(int fd, const char* path, int input, int words) {
  const int wanted = 4 * words;
  const long long size = FileSize(fd);
  if (size < wanted) refuseSize(path, input, size, words);
  const auto bytes = static_cast<size_t>(wanted);
  void* mapping = mmap(nullptr, bytes, PROT_READ, MAP_SHARED, fd, 0);
  if (mapping == MAP_FAILED) {
    blame(path);
    die("problem with mmap\n");
  }
  // The merge comes by every page, in no order: one read-ahead of the whole
  // serves it, and reading around a page fault later does not. Only advice.
  madvise(mapping, bytes, MADV_WILLNEED);
  madvise(mapping, bytes, MADV_RANDOM);
  return static_cast<unsigned*>(mapping);
}

}  // namespace

void loadBinaryStrings() {
  binaryString = uninitializedTable<unsigned*>(ninputs, "the input strings");
  for (int i = 0; i < ninputs; i++) {
    if (blengths[i] > INT_MAX) {
      die("binary length of input %d is %u bits, at most %d are possible\n", i,
          blengths[i], INT_MAX);
    }
    const int words = static_cast<int>(storedWords(blengths[i]));
    char path[kPathSize];
    formatPath(path, kPathSize, "%s_%d%s", stringPrefix, i, ".stbin");
    const int fd = InputOpen(path);
    if (fd < 0) {
      blame(path);
      die("can't open input string binary file %s\n", path);
    }
    binaryString[i] = usemmap != 0 ? mapString(fd, path, i, words)
                                   : readString(fd, path, i, words);
    FileClose(fd);
  }
}
