// The argument scan: from the command line to the options of a merge.

#ifndef PALVOR_CLI_ARGUMENTS_H_
#define PALVOR_CLI_ARGUMENTS_H_

#include <string>
#include <vector>

#include "palvor/merge.h"

namespace cli {

// A number of an option that is not what its text says: letters follow it, or
// it is beyond 32 bits.
struct OddNumber {
  char letter;
  const char* text;
  int number;  // as which it is read

  // "-m 1G is read as 1"
  std::string told() const;
};

// What the command line said. Numbers are 0, and texts null, if not given; a
// text is used as it stands: a folder brings its trailing "/".
struct Arguments {
  const char* inputFolder = nullptr;   // first positional value
  const char* inputPrefix = nullptr;   // second positional value
  const char* outputFolder = nullptr;  // -o
  const char* outputPrefix = nullptr;  // -p
  const char* arrayFolder = nullptr;   // -S
  const char* arrayPrefix = nullptr;   // -s
  const char* indexes = nullptr;       // -J  only listed, and warned of

  bool quiet = false;         // -q  no progress and statistics lines
  bool verbose = false;       // -v  only listed
  bool check = false;         // -c  only listed
  bool array = false;         // -a
  bool lcps = false;          // -l
  bool bigSuffixes = false;   // -b  only listed
  bool czep = false;          // -w  only listed
  bool noPrefixKeys = false;  // -X
  bool noHeap = false;        // -L  only listed
  bool heap = false;          // -H
  bool keepOpen = false;      // -f
  bool zeroOrigin = false;    // -z
  bool mapStrings = false;    // -U
  bool reorder = false;       // -R
  bool compact = false;       // -C
  bool readLcps = false;      // -Z

  int memory = 0;         // -m  bytes
  int streamBuffer = 0;   // -M  bytes
  int outputBuffer = 0;   // -n
  int maxIterations = 0;  // -i  only listed: it limits nothing
  int prefixLength = 0;   // -x  only listed
  int mostInputs = 0;     // -N

  std::vector<OddNumber> oddNumbers;  // in the order of the command line
};

// Scans argv[1] to argv[argc - 1]. Options and positional values mix freely; an
// option's value is always the next argument; of a repeated value the later
// counts. Each -h writes the usage text. Fails on an unknown option, a value
// that is missing or begins with "-", a third positional value, or a missing
// one.
Arguments scanArguments(int argc, char** argv);

// The line "merge options: ..." with every setting in force, and warnings about
// odd numbers and -J.
void sayOptions(const Arguments& arguments);

// What the merge is asked to do.
palvor::MergeOptions mergeOptionsOf(const Arguments& arguments);

struct Number {
  int value;
  bool odd;  // the text says something else
};

// Reads a number: 2^n, the 32-bit integer 1 shifted left by the low five bits
// of n (2^31 is the most negative value), or a decimal number with optional
// fraction and exponent, truncated toward zero. What follows the number is
// ignored: "64K" is 64, "abc" is 0. A value beyond the signed 32-bit range
// becomes the nearest value within it.
Number numberOf(const char* text);

}  // namespace cli

#endif  // PALVOR_CLI_ARGUMENTS_H_
