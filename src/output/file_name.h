// The name of the output file worked on.

#ifndef PALVOR_OUTPUT_FILE_NAME_H_
#define PALVOR_OUTPUT_FILE_NAME_H_

// Bytes of `fileName`: an output prefix always leaves room for what follows.
constexpr int kFileNameSize = 1024;

// Formed anew by each writer for each file that it opens.
extern char fileName[kFileNameSize];

#endif  // PALVOR_OUTPUT_FILE_NAME_H_
