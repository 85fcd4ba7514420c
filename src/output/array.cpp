#include "output/array.h"

#include "output/counters.h"
#include "output/file_name.h"
#include "run/values.h"
#include "support/clocks.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/paths.h"
#include "support/report.h"

constinit Suffix* suffBuff = nullptr;
constinit LcpEntry* lcpfBuff = nullptr;
constinit int nbuff = 0;

namespace {

int fd = -1;   // descriptor of the .stpsa output, -1 when not open
int fd1 = -1;  // descriptor of the .stlcp output, -1 when not open
int na = 0;    // flushes done so far

int createOutput(const char* kind) {
  formatPath(fileName, kFileNameSize, "%s%s", streePrefix, kind);
  return FileOpen(fileName, 1);
}

// Whether the first `bytes` bytes of a buffer could be written.
bool writeWhole(int to, const void* buffer, int bytes) {
  return bytes == 0 || FileWrite(to, buffer, bytes) == bytes;
}

}  // namespace

void allocateArrayBuffers() {
  suffBuff = static_cast<Suffix*>(Calloc(treeBuffSize, sizeof(Suffix)));
  if (larray != 0) {
    lcpfBuff = static_cast<LcpEntry*>(
        Malloc(static_cast<unsigned long>(treeBuffSize) * sizeof(LcpEntry)));
  }
  if (suffBuff == nullptr || (larray != 0 && lcpfBuff == nullptr)) {
    die("couldn't allocate %d Suffixes for suffBuff\n", treeBuffSize);
  }
}

void flushArray(int last) {
  const int now = mclock();
  const int previous = tstart;
  tstart = now;
  rollUpCounters();

  if (fd < 0) {
    fd = createOutput(".stpsa");
    if (fd < 0) die("cannot open suffix array file for writing\n");
  }
  if (larray != 0 && fd1 < 0) {
    fd1 = createOutput(".stlcp");
    if (fd1 < 0) die("cannot open LCP array file for writing\n");
  }
  const int suffixBytes = nbuff * static_cast<int>(sizeof(Suffix));
  if (!writeWhole(fd, suffBuff, suffixBytes)) {
    die("not all output Suffixes were written\n");
  }
  const int lcpBytes = nbuff * static_cast<int>(sizeof(LcpEntry));
  if (larray != 0 && !writeWhole(fd1, lcpfBuff, lcpBytes)) {
    die("not all output LCPs were written\n");
  }

  if (quiet == 0) {
    say("Flush array %3d: nbuff=%d t=%d ms\n", na, nbuff,
        elapsed(previous, now));
  }
  if (last != 0) {
    // Some file systems report a failed write only here.
    if (FileClose(fd) < 0) die("not all output Suffixes were written\n");
    fd = -1;
    if (larray != 0) {
      if (FileClose(fd1) < 0) die("not all output LCPs were written\n");
      fd1 = -1;
    }
  }
  nbuff = 0;
  na++;
}
