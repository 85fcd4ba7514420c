#include "output/tree_flush.h"

#include <algorithm>
#include <limits>

#include "output/compaction.h"
#include "output/counters.h"
#include "output/divider.h"
#include "output/emitted.h"
#include "output/file_name.h"
#include "output/output_file.h"
#include "output/tree_buffer.h"
#include "output/tree_walks.h"
#include "run/options.h"
#include "run/values.h"
#include "support/clocks.h"
#include "support/paths.h"
#include "support/report.h"

namespace {

// The root's height, now that all below it is finished: the largest number of
// child links from the root to a record.
int largestNodeDepth() {
  return std::max(lastPath[0].height, heightAbove(0) + 1);
}

void writeDivider(int maxdepth) {
  divider.nodes = nnode;
  divider.maxDepth = static_cast<uint16_t>(maxdepth);
  divider.lastPrefix = lastSuffix.prefix0;
  const int size = sizeof divider;
  formatPath(fileName, kFileNameSize, "%s%s", streePrefix, ".stdiv");
  if (writeOutput(dividersFile, fileName, &divider, size) != size) {
    die("could not write current divider element\n");
  }
}

void writeTree() {
  formatPath(fileName, kFileNameSize, "%s_%d%s", streePrefix, divider.tree,
             ".stree");
  const int file = createOutput(fileName);
  if (file < 0) {
    die("cannot open suffix array %s for writing tree\n", fileName);
  }
  const int size = nnode * static_cast<int>(sizeof(TreeNode));
  const int written =
      writeOutput(file, fileName, reorder != 0 ? newtBuff : treeBuff, size);
  if (closeOutput(file, fileName) < 0 || written != size) {
    die("not all output tree nodes were written: %d bytes and %d Nodes\n",
        written, nnode);
  }
}

void reportCompaction(const TreeCounts& counts) {
  say("  nl/nt/ni/nl/nr/ne/nd=%d/%d/%d/%d/%d/%d/%d\n", counts.nleaf,
      counts.ntrlf, counts.nintr, counts.nleft, counts.nrght, counts.nempt,
      counts.ndupl);
  say("  n/h/c={%d/%d/%d, %d/%d/%d, %d/%d/%d}\n", hset[0], hacc[0], hcol[0],
      hset[1], hacc[1], hcol[1], hset[2], hacc[2], hcol[2]);
}

}  // namespace

void flushTree() {
  if (reorder != 0) reorderTree();

  const int walkStart = mclock();
  const int maxdepth = largestNodeDepth();
  const TreeCounts counts = compact != 0 ? countRecords() : TreeCounts{};
  const int walkTime = elapsed(walkStart, mclock());

  writeDivider(maxdepth);
  writeTree();

  const int now = mclock();
  const int realNow = rclock();
  const int time = elapsed(tstart, now);
  const int real = elapsed(rstart, realNow);
  tstart = now;
  rstart = realNow;
  if (quiet == 0) {
    // Not 0.0 / 0.0, which has its sign bit set on some processors.
    const double average =
        nlcp != 0 ? llcp / nlcp : std::numeric_limits<double>::quiet_NaN();
    say("Tree %3d:  c3 %2d  c4 %2d  c6 %6d  maxd=%d (%d ms), alcp=%.0f, time "
        "%d ms, real %d ms\n",
        ntree, case3, case4, case6, maxdepth, walkTime, average, time, real);
    if (compact != 0) reportCompaction(counts);
  }
  rollUpCounters();
  case3 = case4 = case6 = 0;
  ntree++;
  nnode = 1;
}
