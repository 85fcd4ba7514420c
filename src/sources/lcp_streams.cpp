#include "sources/lcp_streams.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "run/values.h"
#include "sources/suffix_streams.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/paths.h"
#include "support/report.h"

constinit LcpEntry** lcpbs = nullptr;
constinit int* lcpls = nullptr;
constinit int* lcpps = nullptr;
constinit unsigned* lcpos = nullptr;

namespace {

constexpr int kBlockEntries = 16384;
constexpr int kBlockBytes = kBlockEntries * static_cast<int>(sizeof(LcpEntry));

// Stands behind the last entry of a file. Any word with bit 31 set is no valid
// entry, so one test finds both the end and a length that is too large.
constexpr LcpEntry kNoEntry = 0xFFFFFFFF;

void formatLcpPath(char (&path)[kPathSize], int j) {
  formatPath(path, kPathSize, "%s_%d%s", sarrayPrefix, j, ".stlcp");
}

void refillBuffer(int j) {
  char path[kPathSize];
  formatLcpPath(path, j);
  const int fd = InputOpen(path);
  if (fd < 0) {
    blame(path);
    die("can't open LCP file %s\n", path);
  }
  const int got = FileRead(fd, lcpbs[j], kBlockBytes, 4LL * lcpos[j]);
  if (got < 0) die("can't read LCP file %s: %s\n", path, std::strerror(errno));
  FileClose(fd);
  const int count = got / static_cast<int>(sizeof(LcpEntry));
  std::fill(lcpbs[j] + count, lcpbs[j] + kBlockEntries, kNoEntry);
  if (lcpos[j] == 0 && count > 0) lcpbs[j][0] &= ~(1U << 31);
  lcpps[j] = 0;
  lcpos[j] += static_cast<unsigned>(count);
}

// Ends the run because of a word with bit 31 set, unless it only stands for
// the missing entry 0 of a stream without records.
void refuseEntry(int j) {
  if (sufos[j] == 0) return;
  char path[kPathSize];
  formatLcpPath(path, j);
  const long long record =
      static_cast<long long>(sufos[j]) - sufls[j] + sufps[j] - 1;
  if (record >= lcpos[j]) {
    die("LCP file %s is shorter than its Suffix file: no entry for record "
        "%lld\n",
        path, record);
  }
  die("entry %lld of LCP file %s: the common prefix does not fit, it has 2^30 "
      "bits or more\n",
      record, path);
}

}  // namespace

void initLcpStreams(int k) {
  lcpbs = uninitializedTable<LcpEntry*>(k, "the LCP streams' buffers");
  lcpls = uninitializedTable<int>(k, "the LCP streams' capacities");
  lcpps = uninitializedTable<int>(k, "the LCP streams' positions");
  lcpos = zeroedTable<unsigned>(k, "the LCP streams' offsets");
  for (int j = 0; j < k; j++) {
    lcpls[j] = lcpps[j] = kBlockEntries;
    lcpbs[j] =
        uninitializedTable<LcpEntry>(kBlockEntries, "an LCP stream's buffer");
  }
}

LcpEntry getNextLCP(int j) {
  if (lcpBlockUsedUp(j)) refillBuffer(j);
  const LcpEntry entry = lcpbs[j][lcpps[j]++];
  if ((entry >> 31) != 0) refuseEntry(j);
  return entry;
}
