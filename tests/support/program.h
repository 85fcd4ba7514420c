// Runs the real programs and keeps what they said.

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

// What a program's process finds.
struct Setting {
  std::string input = {};   // on standard input
  std::string output = {};  // where standard output goes, instead of `out`
  std::vector<std::string> under = {};  // command that it is run under
  // Limits: descriptors (the hard limit is the soft one if not given), bytes of
  // address space, bytes of any file that is written.
  std::optional<unsigned long> files = {};
  std::optional<unsigned long> hardFiles = {};
  std::optional<unsigned long> memory = {};
  std::optional<unsigned long> fileSize = {};
};

// Run palvor or palvor-kit with these arguments, the program's name left out.
Outcome runPalvor(const std::vector<std::string>& arguments,
                  const Setting& setting = {});
Outcome runKit(const std::vector<std::string>& arguments,
               const Setting& setting = {});

// Runs a line as a shell does that finds the built palvor.
Outcome runShell(const std::string& line);

// Palvor's path, as the program sees it.
std::string programPath();

// Whether the program is built with the address sanitizer, which needs all of
// the address space, so that it cannot be limited.
bool addressSpaceIsNeeded();

// The lines of a text, without their ends; its words, parted by blanks.
std::vector<std::string> linesOf(const std::string& text);
std::vector<std::string> wordsOf(const std::string& text);

#endif  // PALVOR_TESTS_SUPPORT_PROGRAM_H_
