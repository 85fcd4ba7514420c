// The merge loop: the hot path.

#ifndef PALVOR_MERGE_LOOP_H_
#define PALVOR_MERGE_LOOP_H_

// Merges the streams, from the first suffix to the last, into the output
// files, and reports the totals. initMerge must have run. Returns 0; every
// failure ends the run.
int mergeSuffixArrays();

#endif  // PALVOR_MERGE_LOOP_H_
