// What the merge counts and the output reports.
//
// A counter that begins with n counts since the last flush; each flush adds it
// to the run's total, which begins with t, and zeroes it. What the comparison
// counts stands in sources/compare.h.

#ifndef PALVOR_OUTPUT_COUNTERS_H_
#define PALVOR_OUTPUT_COUNTERS_H_

// Written by the merge loop and by priming.
extern int nsuff;  // suffixes taken from the streams

// Written by the ordering of the streams (merge/ordering.h), which counts the
// steps of a walk of the list whether it walked or not.
extern long long nncmp;  // comparisons made to order the streams
extern long long nlcmp;  // list positions examined
extern long long nnac;   // list comparisons that found 64 common bits or more
extern long long nnrc;   // ... that found 64 bits more than were known
extern long long nnoc;   // ... against a stream whose entry had not changed

// Written by recordLcp.
extern int nlcp;     // LCP values recorded
extern double llcp;  // their sum, in bits

// Written by the tree insertion.
extern int maxPath;  // most path entries in use in the tree

// Written by the tree insertion; zeroed by the tree flush, without a total.
extern int case3;  // insertions of a suffix equal to the one before
extern int case4;  // ... of one that the suffix before is a prefix of
extern int case6;  // ... that split an edge

// Over the whole run; written by recordLcp, but `ntree` by the tree flush.
extern int maxlcp;  // largest LCP value, in bits
extern int nmlcp1;  // LCP values above 255 bits
extern int nmlcp2;  // LCP values of 32768 bits or more
extern int ntree;   // trees written

// Run totals, written by rollUpCounters alone.
extern double tsuff, tnlcp, tllcp, tlcmp, tncmp, tnrc, tnoc, tnac, tnp2;
extern int tmaxPath;  // largest `maxPath` of any tree

// Clock readings at the last flush, or at the start of the merge: processor
// time (mclock) and wall-clock time (rclock). Written by the merge loop's
// start and by each flush.
extern int tstart;
extern int rstart;

// Records the LCP, in bits, of a suffix that is not the first of its tree.
inline void recordLcp(int bits) {
  if (bits > 255) {
    nmlcp1++;
    if (bits >= 32768) nmlcp2++;
  }
  if (bits > maxlcp) maxlcp = bits;
  llcp += bits;
  nlcp++;
}

// Adds the counters since the last flush to the run's totals and zeroes them.
void rollUpCounters();

// The two lines that end a merge. The caller asks `quiet` first.
void reportTotals();

#endif  // PALVOR_OUTPUT_COUNTERS_H_
