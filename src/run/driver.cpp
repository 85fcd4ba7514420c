#include "run/driver.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "merge/front.h"
#include "merge/loop.h"
#include "merge/refill.h"
#include "output/output_file.h"
#include "run/lengths.h"
#include "run/options.h"
#include "run/paths.h"
#include "run/sizes.h"
#include "run/values.h"
#include "sources/strings.h"
#include "sources/suffix_streams.h"
#include "support/clocks.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/paths.h"
#include "support/report.h"

namespace {

// As many partitions as inputs are read. Were there others that are not empty,
// -z would give their records other inputs' numbers.
void testOrigins() {
  if (iorigin == 0 || nparts <= ninputs) return;
  long long covered = 0;
  for (int j = 0; j < ninputs; j++) covered += plengths[j];
  if (covered >= ninputs) return;
  die("partitions file %s: with option -z, its first %d entries must cover the "
      "%d inputs, they cover %lld\n",
      plengthsFileName, ninputs, ninputs, covered);
}

// Sets `ninputs`, `nparts` and the lengths tables.
void loadLengths(const RunPaths& paths) {
  const long long size = FileSize(paths.lengthsFile);
  if (size < 0) {
    blame(paths.lengthsFile);
    die("could not access lengths file %s\n", paths.lengthsFile);
  }
  if (size / 4 > INT_MAX) {
    die("lengths file %s: %lld inputs are too many\n", paths.lengthsFile,
        size / 4);
  }
  ninputs = static_cast<int>(size / 4);
  if (nmerge != 0) ninputs = std::min(ninputs, nmerge);
  lengths = zeroedTable<unsigned>(ninputs, "the inputs' lengths");
  blengths = zeroedTable<unsigned>(ninputs, "the inputs' binary lengths");

  const long long partsSize = FileSize(plengthsFileName);
  // Missing, it means none; unreadable, it might have named some.
  if (partsSize < 0 ? errno != ENOENT : IsStream(plengthsFileName)) {
    die("could not access partitions file %s: %s\n", plengthsFileName,
        std::strerror(errno));
  }
  if (partsSize / 4 > INT_MAX) {
    die("partitions file %s: %lld partitions are too many\n", plengthsFileName,
        partsSize / 4);
  }
  if (partsSize > 0) nparts = static_cast<int>(partsSize / 4);
  if (nparts != 0) {
    if (nmerge != 0) {
      die("option -N caps the inputs, not the partitions that name them: it "
          "cannot be used with the partitions file %s\n",
          plengthsFileName);
    }
    plengths = zeroedTable<unsigned>(nparts, "the partitions' lengths");
  }
  readPartitionInfo(paths.lengthsFile, paths.blengthsFile, plengthsFileName,
                    lengths, blengths, plengths, ninputs);
  testOrigins();
}

// Prints the totals of `lengths` and returns its largest entry, 0 if none.
int reportLengths() {
  double total = 0.0;
  int longest = 0;
  for (int i = 0; i < ninputs; i++) {
    const int length = static_cast<int>(lengths[i]);
    total += length;
    longest = std::max(longest, length);
  }
  if (quiet == 0) {
    say("total length = %.0f, max input size = %d, number of inputs = %d, "
        "number of parts = %d\n",
        total, longest, ninputs, streamCount());
  }
  return longest;
}

// Lifts the limit of open files as far as the process may.
void raiseDescriptorLimit() {
  struct rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

void openSuffixFiles() {
  const int k = streamCount();
  suffixArrayFiles = uninitializedTable<int>(k, "the suffix arrays' files");
  std::fill_n(suffixArrayFiles, k, -1);
  if (useFPs == 0) return;
  raiseDescriptorLimit();
  for (int j = 0; j < k; j++) {
    char path[kPathSize];
    formatPath(path, kPathSize, "%s_%d%s", sarrayPrefix, j, ".stpsa");
    suffixArrayFiles[j] = InputOpen(path);
    if (suffixArrayFiles[j] < 0) {
      blame(path);
      die("can't open Suffix file %s\n", path);
    }
  }
}

void reportRun(int startTime) {
  // The order counts: getPFs gives what this mclock captured.
  const int time = elapsed(startTime, mclock());
  const int write = WriteTime();
  const int read = ReadTime();
  const int lcp = getLCPTime();
  const int real = elapsed(realt, rclock());
  say("Palvor: mem %lld bytes, %d PFs, real %d ms, lcp %d ms, r/w %d/%d ms, "
      "time %d ms\n",
      MemUsed(), getPFs(), real, lcp, read, write, time);
}

}  // namespace

int runMerge(const PathArguments& arguments) {
  testSizeOptions();
  const RunPaths paths = composePaths(arguments);
  // If it fails, creating the first file in it says so.
  mkdir(paths.outputFolder, 0755);

  const int startTime = mclock();
  realt = rclock();
  loadLengths(paths);
  testNumberedPaths();
  sizeBuffers(reportLengths());

  loadBinaryStrings();
  openSuffixFiles();
  dividersFile = createOutput(paths.dividersFile);
  if (dividersFile < 0) {
    die("can't open ST dividers file %s for writing\n", paths.dividersFile);
  }
  initBuffs(nparts != 0 ? plengths : lengths, streamCount(), Manzini);
  initMerge();
  if (quiet == 0) {
    say("in buff: %d suffixes, out buff: %d nodes, SS=%u NS=%u,  real %d ms\n",
        sufBuffSize, outBuffSize, 16U, 12U, elapsed(realt, rclock()));
  }

  mergeSuffixArrays();
  if (closeOutput(dividersFile, paths.dividersFile) < 0) {
    die("could not write ST dividers file %s\n", paths.dividersFile);
  }
  if (quiet == 0) reportRun(startTime);
  return 0;
}
