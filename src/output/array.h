// The array output: the merged suffix array, and with -l its LCP array.
//
// The merge appends to two buffers that fill in step; a full buffer is written
// to the files <streePrefix>.stpsa and <streePrefix>.stlcp, which the first
// flush creates and the last one closes. The layouts are those of the inputs
// (sources/suffix.h, sources/lcp_entry.h): entry m of the LCP array describes
// merged records m - 1 and m.

#ifndef PALVOR_OUTPUT_ARRAY_H_
#define PALVOR_OUTPUT_ARRAY_H_

#include "output/emitted.h"
#include "run/options.h"
#include "sources/lcp_entry.h"
#include "sources/suffix.h"

extern Suffix* suffBuff;    // `treeBuffSize` records; array mode only
extern LcpEntry* lcpfBuff;  // as many entries; only with `larray`
extern int nbuff;           // entries in use in both

// Allocates the buffers at their full size. The run ends if they can't be had.
void allocateArrayBuffers();

// Writes the `nbuff` buffered entries, reports the flush, rolls the counters
// up and empties the buffers; with `last` nonzero also closes the files. The
// files are created even if there is nothing to write. A file that cannot be
// created, or not wholly written, ends the run.
void flushArray(int last);

// Appends a merged suffix, and with `larray` its LCP entry, flushing first if
// the buffers are full.
inline void appendToArray(const Suffix& suffix, LcpEntry entry) {
  if (nbuff >= treeBuffSize) flushArray(0);
  if (larray != 0) lcpfBuff[nbuff] = entry;
  suffBuff[nbuff++] = suffix;
}

#endif  // PALVOR_OUTPUT_ARRAY_H_
