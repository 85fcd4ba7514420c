// The usage text and the build's version.

#ifndef PALVOR_CLI_USAGE_H_
#define PALVOR_CLI_USAGE_H_

namespace cli {

// Writes the usage text to standard error, with `name` as the program's name.
void sayUsage(const char* name);

// The build's date and time, "Mmm dd yyyy hh:mm:ss". They follow the compiler's
// macros, so a build with SOURCE_DATE_EPOCH set can be reproduced.
const char* version();

}  // namespace cli

#endif  // PALVOR_CLI_USAGE_H_
