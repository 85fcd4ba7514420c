// Runs the real programs and keeps what they said.

#ifndef PALVOR_TESTS_KIT_KIT_PROGRAM_H_
#define PALVOR_TESTS_KIT_KIT_PROGRAM_H_

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

struct KitOutcome {
  int status;  // of the exit; 128 and the signal's number if one ended it
  std::string out;
  std::string err;
};

struct KitSetting {
  std::string input = {};                      // on standard input
  std::optional<unsigned long> fileSize = {};  // no file may grow larger, bytes
  std::string output = {};  // where standard output goes, instead of `out`
};

// Runs palvor-kit with these arguments, the program's name left out.
KitOutcome runKit(const std::vector<std::string>& arguments,
                  const KitSetting& setting = {});

// Starts palvor-kit with its output thrown away, and returns its process.
pid_t startKit(const std::vector<std::string>& arguments);

// Runs a line as a shell does that finds the built palvor.
KitOutcome runShell(const std::string& line);

// The last line of a text, without its end.
std::string lastLine(const std::string& text);

#endif  // PALVOR_TESTS_KIT_KIT_PROGRAM_H_
