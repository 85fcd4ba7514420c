// Output files: what could not be created, or not wholly written, is blamed
// (support/report.h), and the caller ends the run in its own words.

#ifndef PALVOR_OUTPUT_OUTPUT_FILE_H_
#define PALVOR_OUTPUT_OUTPUT_FILE_H_

// Creates a file, or empties it. Returns the descriptor, negative on failure.
int createOutput(const char* path);

// Writes bytes, 0 or more, to the file open as `fd`. Returns how many were
// written: fewer than `nbytes` on failure.
int writeOutput(int fd, const char* path, const void* buf, int nbytes);

// Closes the file open as `fd`; negative on failure: some file systems report
// a failed write only here.
int closeOutput(int fd, const char* path);

#endif  // PALVOR_OUTPUT_OUTPUT_FILE_H_
