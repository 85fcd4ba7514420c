#include "output/array.h"

#include "output/counters.h"
#include "output/file_name.h"
#include "output/output_file.h"
#include "run/values.h"
#include "support/clocks.h"
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

const char* nameOutput(const char* kind) {
  formatPath(fileName, kFileNameSize, "%s%s", streePrefix, kind);
  return fileName;
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
    fd = createOutput(nameOutput(".stpsa"));
    if (fd < 0) die("cannot open suffix array file for writing\n");
  }
  if (larray != 0 && fd1 < 0) {
    fd1 = createOutput(nameOutput(".stlcp"));
    if (fd1 < 0) die("cannot open LCP array file for writing\n");
  }
  const int suffixBytes = nbuff * static_cast<int>(sizeof(Suffix));
  if (writeOutput(fd, nameOutput(".stpsa"), suffBuff, suffixBytes) !=
      suffixBytes) {
    die("not all output Suffixes were written\n");
  }
  const int lcpBytes = nbuff * static_cast<int>(sizeof(LcpEntry));
  if (larray != 0 &&
      writeOutput(fd1, nameOutput(".stlcp"), lcpfBuff, lcpBytes) != lcpBytes) {
    die("not all output LCPs were written\n");
  }

  if (quiet == 0) {
    say("Flush array %3d: nbuff=%d t=%d ms\n", na, nbuff,
        elapsed(previous, now));
  }
  if (last != 0) {
    if (closeOutput(fd, nameOutput(".stpsa")) < 0) {
      die("not all output Suffixes were written\n");
    }
    fd = -1;
    if (larray != 0) {
      if (closeOutput(fd1, nameOutput(".stlcp")) < 0) {
        die("not all output LCPs were written\n");
      }
      fd1 = -1;
    }
  }
  nbuff = 0;
  na++;
}
