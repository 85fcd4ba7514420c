// What the run made of its command line and its lengths files.
//
// Set once by the driver (run/driver.cpp), before the merge, and read-only
// afterwards.

#ifndef PALVOR_RUN_VALUES_H_
#define PALVOR_RUN_VALUES_H_

// Bytes of a path's buffer: a path has at most 199 characters.
constexpr int kPathSize = 200;

extern int ninputs;  // input strings
extern int nparts;   // partitions; 0 without a partitions file

// Per input, `ninputs` entries each: the length as the lengths file gives it,
// and the length in bits of the packed string.
extern unsigned* lengths;
extern unsigned* blengths;

// Per partition, `nparts` entries: how many inputs it covers. Null without
// partitions.
extern unsigned* plengths;

extern int sufBuffSize;  // capacity of each suffix input buffer, in records
extern int outBuffSize;  // capacity of the output buffer, in nodes or records

// Paths. The prefixes end in a file's first name, without number and kind.
extern char stringPrefix[kPathSize];      // input strings
extern char plengthsFileName[kPathSize];  // partitions file
extern char sarrayPrefix[kPathSize];      // input suffix arrays
extern char streePrefix[kPathSize];       // every output file

// Per stream, the descriptor of its suffix array file, -1 if not kept open.
extern int* suffixArrayFiles;

extern int dividersFile;  // descriptor of the dividers file, open all the run
extern int realt;         // `rclock` reading at the start of the run

// Number of streams: one for each partition, or, without partitions, input.
inline int streamCount() { return nparts != 0 ? nparts : ninputs; }

#endif  // PALVOR_RUN_VALUES_H_
