// The front of the merge: each stream's current suffix.

#ifndef PALVOR_MERGE_FRONT_H_
#define PALVOR_MERGE_FRONT_H_

#include "sources/suffix.h"

// Per stream, its smallest suffix not yet emitted, in the stream's buffer
// (sources/suffix_streams.h); null once the stream has ended. Written by
// initMerge and by the merge loop's refill.
extern Suffix** Suffixes;

// Comparison word limit, `maxIter` or 25000. Kept for the record: it neither
// bounds a comparison nor changes its result.
extern int maxIterations;

// Allocates the state of the merge, and primes it: takes the first suffix of
// every stream and puts it into the ordering (merge/ordering.h). Streams
// without suffixes stay out. Called once; the streams must be set up.
void initMerge();

#endif  // PALVOR_MERGE_FRONT_H_
