// How large the buffers are.

#ifndef PALVOR_RUN_SIZES_H_
#define PALVOR_RUN_SIZES_H_

// Ends the run if a size or count given as an option cannot serve: one that is
// negative, or too large for its buffer. Needs nothing but the options.
void testSizeOptions();

// Sets `sufBuffSize` and `outBuffSize`, and stores the default of `maxSAMem`
// back.
//   longest  the largest entry of `lengths`: the output buffer's size unless
//            -n gives one, within the least that works and 1048576
// Warns, unless `quiet`, of input buffers too small for a single record.
void sizeBuffers(int longest);

#endif  // PALVOR_RUN_SIZES_H_
