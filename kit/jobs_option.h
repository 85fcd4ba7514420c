// The option --jobs of all commands that share work out among threads.

#ifndef PALVOR_KIT_JOBS_OPTION_H_
#define PALVOR_KIT_JOBS_OPTION_H_

#include <string>

namespace CLI {
class App;
}

namespace kit {

// Adds it: a number of threads, which must outlive the command, and stays as it
// is if the option is not given. `what` describes it.
void addJobs(CLI::App& command, int& jobs,
             const std::string& what = "threads that share the work");

}  // namespace kit

#endif  // PALVOR_KIT_JOBS_OPTION_H_
