#include "sources/suffix_streams.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "run/options.h"
#include "run/values.h"
#include "sources/lcp_streams.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/paths.h"
#include "support/report.h"

constinit Suffix** sufbs = nullptr;
constinit int* sufls = nullptr;
constinit int* sufps = nullptr;
constinit unsigned* sufos = nullptr;
constinit unsigned* alens = nullptr;

namespace {

constexpr int kRecordSize = sizeof(Suffix);

void formatSuffixPath(char (&path)[kPathSize], int j) {
  formatPath(path, kPathSize, "%s_%d%s", sarrayPrefix, j, ".stpsa");
}

void setOrigins(const unsigned* plens, int k) {
  alens = uninitializedTable<unsigned>(k, "the streams' input origins");
  unsigned origin = 0;
  for (int j = 0; j < k; j++) {
    alens[j] = origin;
    origin += 4 * (nparts != 0 ? plens[j] : 1);
  }
}

// A read that fell short is only right at the file's end: anything else would
// silently lose the rest of the stream.
void expectEnd(int fd, const char* path, long long end) {
  struct stat status = {};
  if (fstat(fd, &status) < 0) {
    die("can't examine Suffix file %s: %s\n", path, std::strerror(errno));
  }
  if (S_ISREG(status.st_mode) && status.st_size != end) {
    die("reading error in Suffix file %s: got %lld of %lld bytes\n", path, end,
        static_cast<long long>(status.st_size));
  }
}

// Reads stream j's next block into its buffer; returns the bytes read.
int readBlock(int j, const char* path) {
  const int wanted = kRecordSize * sufBuffSize;
  const long long offset = static_cast<long long>(kRecordSize) * sufos[j];
  int fd = suffixArrayFiles[j];
  const bool kept = fd >= 0;
  int got;
  if (kept) {
    got = FileRead(fd, sufbs[j], wanted);
  } else {
    fd = InputOpen(path);
    if (fd < 0) {
      blame(path);
      die("can't open Suffix file %s\n", path);
    }
    got = FileRead(fd, sufbs[j], wanted, offset);
  }
  if (got < 0) {
    die("can't read Suffix file %s: %s\n", path, std::strerror(errno));
  }
  if (got < wanted) expectEnd(fd, path, offset + got);
  if (!kept) FileClose(fd);
  return got;
}

// Ends the run because of record `i` of stream j's buffer.
[[noreturn]] void refuseRecord(int j, int i, uint32_t input) {
  char path[kPathSize];
  formatSuffixPath(path, j);
  const long long record = static_cast<long long>(sufos[j]) - sufls[j] + i;
  const Suffix& suffix = sufbs[j][i];
  if (input >= static_cast<uint32_t>(ninputs)) {
    die("record %lld of Suffix file %s: there is no input %u, only %d inputs\n",
        record, path, input, ninputs);
  }
  die("record %lld of Suffix file %s: position %u is not inside input %u of %u "
      "characters\n",
      record, path, suffix.pos, input, blengths[input] / 2);
}

// Tests the records of stream j's buffer from the one to be handed out next on,
// kAdmitted at most, and moves their input numbers to the stream's origin. Few
// enough to be still at hand when they are handed out.
void admitRecords(int j) {
  const uint64_t origin = iorigin != 0 ? alens[j] : 0;
  const uint64_t limit = static_cast<uint64_t>(ninputs) << 2;
  Suffix* records = sufbs[j];
  const int end = std::min(sufls[j], sufps[j] + kAdmitted);
  for (int i = sufps[j]; i < end; i++) {
    const uint64_t input = records[i].input + origin;
    if (input >= limit || records[i].pos >= blengths[input >> 2] / 2) {
      refuseRecord(j, i, static_cast<uint32_t>(input >> 2));
    }
    records[i].input = static_cast<uint32_t>(input);
  }
}

// Reads and counts stream j's next block. False at the file's end.
bool refillBuffer(int j) {
  char path[kPathSize];
  formatSuffixPath(path, j);
  const int got = readBlock(j, path);
  if (got == 0) return false;
  const int count = got / kRecordSize;
  if (static_cast<unsigned>(count) > UINT_MAX - sufos[j]) {
    die("Suffix file %s holds more than %u records\n", path, UINT_MAX);
  }
  if (count < sufBuffSize) sufls[j] = count;
  if (count == 0) return false;
  sufps[j] = 0;
  sufos[j] += static_cast<unsigned>(count);
  return true;
}

}  // namespace

void initBuffs(const unsigned* plens, int k, int withLCP) {
  if (iorigin != 0) setOrigins(plens, k);
  sufbs = uninitializedTable<Suffix*>(k, "the streams' buffers");
  sufls = uninitializedTable<int>(k, "the streams' record counts");
  sufps = uninitializedTable<int>(k, "the streams' positions");
  sufos = zeroedTable<unsigned>(k, "the streams' offsets");
  for (int j = 0; j < k; j++) {
    sufls[j] = sufps[j] = sufBuffSize;
    sufbs[j] = uninitializedTable<Suffix>(sufBuffSize, "a stream's buffer");
  }
  if (withLCP != 0) initLcpStreams(k);
}

Suffix* getNextSufAnew(int j) {
  if (sufps[j] >= sufls[j]) {
    if (sufls[j] < sufBuffSize || !refillBuffer(j)) return nullptr;
  }
  if (sufps[j] % kAdmitted == 0) admitRecords(j);
  return &sufbs[j][sufps[j]++];
}
