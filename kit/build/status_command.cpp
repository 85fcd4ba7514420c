// The command line of palvor-kit status.

#include <CLI/CLI.hpp>
#include <memory>

#include "kit/build/status.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"

namespace kit {

void addStatus(CLI::App& app) {
  auto options = std::make_shared<StatusOptions>();
  CLI::App* command = app.add_subcommand(
      "status",
      "Tell what is in a result's folder, by which version, and whether it is "
      "whole. Exit status 0 only if it is.");
  command->add_option("result", options->result, "the result's folder")
      ->type_name("DIR")
      ->required();
  command->add_flag("--checksums", options->checksums,
                    "read all files and test their checksums, too");
  addJobs(*command, options->jobs, "threads that read");
  command->add_flag("--json", options->json, "report as JSON");
  command->callback([options] { printStatus(*options); });
}

}  // namespace kit
