// Where a run reads and writes.
//
// Every data folder is <folder><prefix>.ST/, with nothing put between folder
// and prefix, so a folder brings its trailing "/".

#ifndef PALVOR_RUN_PATHS_H_
#define PALVOR_RUN_PATHS_H_

#include "run/arguments.h"
#include "run/values.h"

// The paths that the driver alone needs; the others stand in run/values.h.
struct RunPaths {
  char lengthsFile[kPathSize];
  char blengthsFile[kPathSize];
  char outputFolder[kPathSize];
  char dividersFile[kPathSize];
};

// Gives the path texts that the command line left out their defaults, and
// forms every path that can be formed without knowing the number of inputs:
// those returned, and the prefixes in run/values.h. A path of 200 characters
// or more ends the run.
RunPaths composePaths(const PathArguments& arguments);

// Ends the run if the path of the last input string, suffix array or LCP file,
// the longest of its kind, does not fit. Needs `ninputs` and `nparts`.
void testNumberedPaths();

#endif  // PALVOR_RUN_PATHS_H_
