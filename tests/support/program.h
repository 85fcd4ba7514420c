// Runs the real program and keeps what it said.

#ifndef PALVOR_TESTS_SUPPORT_PROGRAM_H_
#define PALVOR_TESTS_SUPPORT_PROGRAM_H_

#include <optional>
#include <string>
#include <vector>

struct Outcome {
  int status;  // of the exit; 128 and the signal's number if one ended it
  std::string out;
  std::string err;
};

// Limits of the program's process.
struct Limits {
  std::optional<unsigned long> files = {};      // soft limit, in descriptors
  std::optional<unsigned long> hardFiles = {};  // hard limit; none: as `files`
  std::optional<unsigned long> memory = {};     // address space, in bytes
};

// Runs palvor with these arguments, the program's name left out.
Outcome runPalvor(const std::vector<std::string>& arguments,
                  const Limits& limits = {});

// The program's file.
std::string programPath();

// Whether the program is built with the address sanitizer, which needs all of
// the address space, so that it cannot be limited.
bool addressSpaceIsNeeded();

// The lines of a text, without their ends.
std::vector<std::string> linesOf(const std::string& text);

#endif  // PALVOR_TESTS_SUPPORT_PROGRAM_H_
