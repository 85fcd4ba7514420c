// Runs of the real programs that are made to fail: files to begin with, one
// command, and what it leaves behind.

#ifndef PALVOR_TESTS_FAULTS_SCENARIO_H_
#define PALVOR_TESTS_FAULTS_SCENARIO_H_

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/temporary_folder.h"

// A program, palvor or palvor-kit, and its arguments; "ROOT" in them stands for
// the folder of the run, its last "/" included.
using Command = std::vector<std::string>;

struct Scenario {
  std::string name;
  std::vector<Command> before;  // what has been run when the command begins
  Command command;
  Command proof = {};  // must not pass what the command left unfinished
};

void PrintTo(const Scenario& scenario, std::ostream* out);

// A folder in which a scenario's command can be run once.
class Ground {
 public:
  // With sequence files a.fa and b.fa.gz, and all that the commands before
  // leave.
  explicit Ground(const Scenario& scenario);

  std::string path(const std::string& name) const { return folder_.path(name); }
  std::string root() const { return path(""); }

  // A file outside the ground for the tracer's words.
  std::string trace() const { return trace_.path("log"); }

  Outcome run(const Command& command, const Setting& setting = {}) const;

  // A text that may name the root, as it is on any ground.
  std::string withoutRoot(std::string text) const;

  // All files, by name, and what is in them, as it is on any ground. Folders
  // are left out.
  std::map<std::string, std::string> files() const;

 private:
  TemporaryFolder folder_;
  TemporaryFolder trace_;
};

// System calls of one kind that the scenario's command makes on one file.
struct FileCalls {
  std::string call;
  std::string file;  // as seen from the ground's root
  int count = 0;
};

// All of them; none if calls cannot be traced here.
std::vector<FileCalls> traceCalls(const Scenario& scenario);

// What happens at the n-th (from 1) of these calls, in the tracer's words, such
// as "error=EIO" or "signal=SIGKILL".
Setting withFault(const Ground& ground, const FileCalls& calls,
                  const std::string& what, int n);

#endif  // PALVOR_TESTS_FAULTS_SCENARIO_H_
