#include "kit/jobs_option.h"

#include <CLI/CLI.hpp>

namespace kit {

void addJobs(CLI::App& command, int& jobs, const std::string& what) {
  command.add_option("-j,--jobs", jobs, what)
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
}

}  // namespace kit
