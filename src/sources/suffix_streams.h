// The buffered suffix streams: one for each input suffix array, read in blocks
// through a buffer of its own and handed out record by record.
//
// Stream j reads the file <sarrayPrefix>_<j>.stpsa. A block is read with one
// call into the whole buffer, through the descriptor kept in
// `suffixArrayFiles`[j] if there is one, else by opening the file, reading at
// the stream's own offset and closing it again. Every record is tested before
// it is handed out: none names an input or a position that is not there.
//
// The tables have one entry per stream, are allocated by initBuffs, counted as
// memory used, and written by initBuffs and getNextSuf alone.

#ifndef PALVOR_SOURCES_SUFFIX_STREAMS_H_
#define PALVOR_SOURCES_SUFFIX_STREAMS_H_

#include <algorithm>

#include "sources/suffix.h"

extern Suffix** sufbs;   // buffer of `sufBuffSize` records
extern int* sufls;       // valid records in it; fewer than `sufBuffSize` only
                         // after the read that reached the file's end
extern int* sufps;       // index of the next record to hand out
extern unsigned* sufos;  // records read from the file so far
extern unsigned* alens;  // with `iorigin` only: amount added to the word
                         // `input` of every record, 4 for each input before

// Sets up k suffix streams, and k LCP streams too (sources/lcp_streams.h) if
// `withLCP` is not 0. Nothing is read yet.
//   plens  per stream: the number of inputs of its partition. Used only with
//          `iorigin`, and not even then without partitions: each stream then
//          has one input, and its own number is added.
// Called once, after the strings are loaded.
void initBuffs(const unsigned* plens, int k, int withLCP);

// Records are tested this many at a time; a power of two.
constexpr int kAdmitted = 512;

// How many of the records in stream j's buffer were tested so far. At least one
// must have been handed out.
inline int admittedRecords(int j) {
  return std::min(sufls[j], ((sufps[j] - 1) | (kAdmitted - 1)) + 1);
}

// getNextSuf, when the buffer is used up or its next records are not tested.
Suffix* getNextSufAnew(int j);

// The next record of stream j, or null when the stream has ended, as often as
// it is asked. The record stays where it is until the next call for the same
// stream. A file that cannot be opened or read, and a record that names an
// input or a position that is not there, end the run; bytes after the last
// whole record are not looked at.
inline Suffix* getNextSuf(int j) {
  const int next = sufps[j];
  if (next >= sufls[j] || next % kAdmitted == 0) return getNextSufAnew(j);
  sufps[j] = next + 1;
  return &sufbs[j][next];
}

#endif  // PALVOR_SOURCES_SUFFIX_STREAMS_H_
