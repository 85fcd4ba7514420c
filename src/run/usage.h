// The usage text and the build's version.

#ifndef PALVOR_RUN_USAGE_H_
#define PALVOR_RUN_USAGE_H_

// Writes the usage text to standard error, whatever `quiet` says, with `name`
// as the program's name. Returns 1, the status of a too short command.
int pusage(const char* name);

// The build's date and time, "Mmm dd yyyy hh:mm:ss", in a buffer of its own.
// They follow the compiler's macros, so a build with SOURCE_DATE_EPOCH set can
// be reproduced.
const char* Version();

#endif  // PALVOR_RUN_USAGE_H_
