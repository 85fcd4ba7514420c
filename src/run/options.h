// What the command line said: the run configuration.
//
// All zero at start, written by the argument scan (run/arguments.h) alone, and
// read-only afterwards but for `maxSAMem`, whose zero the driver replaces by
// its default. Zero means that the option was not given.
//
// The path texts (-o, -p, -S, -s) and the two positional values are not here:
// only the driver needs them (run/arguments.h).

#ifndef PALVOR_RUN_OPTIONS_H_
#define PALVOR_RUN_OPTIONS_H_

// Flags: 1 if given.
extern int quiet;     // -q  no progress and statistics lines
extern int verbose;   // -v  only listed
extern int check;     // -c  only listed
extern int sarray;    // -a  write one suffix array, not tree partitions
extern int larray;    // -l  write the LCP array too
extern int bsuffix;   // -b  only listed
extern int czep;      // -w  only listed
extern int noprefix;  // -X  compare without the records' prefix words
extern int noheap;    // -L  only listed
extern int hpflag;    // -H  order the streams by the heap, not the list
extern int useFPs;    // -f  keep every input suffix array file open
extern int iorigin;   // -z  input numbers start at zero in every array
extern int usemmap;   // -U  map the input strings instead of reading them
extern int reorder;   // -R  write tree nodes in traversal order
extern int compact;   // -C  measure the trees' links with hash sets
extern int Manzini;   // -Z  take LCP values from .stlcp files

// Texts: null if not given.
extern char* Joption;  // -J  only listed, and warned of

// Numbers: 0 if not given.
extern int maxSAMem;   // -m  bytes for all suffix input buffers together
extern int sBuffSize;  // -M  bytes for each suffix input buffer
extern int maxNodes;   // -n  output buffer size, in nodes or records
extern int maxIter;    // -i  word limit of a comparison; limits nothing
extern int pfxlen;     // -x  only listed
extern int nmerge;     // -N  at most this many inputs are taken

#endif  // PALVOR_RUN_OPTIONS_H_
