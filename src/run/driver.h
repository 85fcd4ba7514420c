// The run driver: the whole run, step by step, top to bottom.

#ifndef PALVOR_RUN_DRIVER_H_
#define PALVOR_RUN_DRIVER_H_

#include "run/arguments.h"

// Runs the merge that the options and the path texts ask for: paths and output
// folder, lengths, buffer sizes, strings, streams, merge, statistics. Returns
// 0; every failure ends the process with status 1. Runs once per process.
int runMerge(const PathArguments& arguments);

#endif  // PALVOR_RUN_DRIVER_H_
