// The argument scan: from the command line to the run configuration.

#ifndef PALVOR_RUN_ARGUMENTS_H_
#define PALVOR_RUN_ARGUMENTS_H_

// What the command line said of paths; pointers into the arguments. A text is
// used as it stands: a folder brings its trailing "/".
struct PathArguments {
  char* inputdir = nullptr;         // first positional value
  char* inputfileprefix = nullptr;  // second positional value
  char* odir = nullptr;             // -o, null if not given; so the others
  char* opfx = nullptr;             // -p
  char* sdir = nullptr;             // -S
  char* spfx = nullptr;             // -s
};

// Scans argv[1] to argv[argc - 1] into the options (run/options.h) and returns
// the path texts, both positional values present. Options and positional
// values mix freely; an option's value is always the next argument; of a
// repeated value the later counts. -h writes the usage text and goes on.
// Ends the run on an unknown option, a value that is missing or begins with
// "-", a third positional value, or a missing one.
PathArguments scanArguments(int argc, char** argv);

// The line "merge options: ..." with every setting in force, and the warning
// that -J asks for. The caller asks `quiet` first.
void listOptions(const PathArguments& paths);

// Reads a number: 2^n, the 32-bit integer 1 shifted left by the low five bits
// of n (2^31 is the most negative value), or a decimal number with optional
// fraction and exponent, truncated toward zero. What follows the number is
// ignored: "64K" is 64, "abc" is 0. A value beyond the signed 32-bit range
// becomes the nearest value within it.
int getNum(const char* s);

#endif  // PALVOR_RUN_ARGUMENTS_H_
