// The LCP streams: with -Z, each suffix stream's LCP entries, computed
// elsewhere, are read alongside it.
//
// Stream j reads the file <sarrayPrefix>_<j>.stlcp (sources/lcp_entry.h), one
// entry for each record of the suffix stream. No descriptor is kept: each
// block is read by opening the file, reading at the stream's own offset and
// closing it again.
//
// The tables have one entry per stream, are allocated by initLcpStreams,
// counted as memory used, and written by it, getNextLCP and takeExpected alone.

#ifndef PALVOR_SOURCES_LCP_STREAMS_H_
#define PALVOR_SOURCES_LCP_STREAMS_H_

#include "sources/lcp_entry.h"

extern LcpEntry** lcpbs;  // buffer of 16384 entries
extern int* lcpls;        // its capacity, always 16384
extern int* lcpps;        // index of the next entry to hand out
extern unsigned* lcpos;   // entries read from the file so far

// Sets up k LCP streams. Nothing is read yet.
void initLcpStreams(int k);

// Stream j's next entry. Entry 0 is taken together with record 0 of the suffix
// stream, entry m with record m, after that record; entry 0 describes no pair,
// and its value means nothing. A file that cannot be opened or read, that ends
// before the suffix stream does, or whose entry (but entry 0) has bit 31 set
// and so holds no length below 2^30 bits, ends the run.
LcpEntry getNextLCP(int j);

// Whether the next getNextLCP of stream j reads a block.
inline bool lcpBlockUsedUp(int j) { return lcpps[j] >= lcpls[j]; }

// Takes stream j's next entry if it is at hand and is this one, which must be a
// valid entry. Otherwise nothing is taken, and the answer is false.
inline bool takeExpected(int j, LcpEntry entry) {
  if (lcpBlockUsedUp(j) || lcpbs[j][lcpps[j]] != entry) return false;
  lcpps[j]++;
  return true;
}

#endif  // PALVOR_SOURCES_LCP_STREAMS_H_
