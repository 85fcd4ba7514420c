// The command line of palvor-kit shared.

#include <cstdint>
#include <memory>

#include "kit/answers/shared.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"

namespace kit {

void addShared(CLI::App& app) {
  auto options = std::make_shared<SharedOptions>();
  CLI::App* command = app.add_subcommand(
      "shared",
      "Tell what the genomes of a merged array have in common: the longest "
      "substrings of all, or their maximal unique matches.");
  addMergedOptions(*command, options->merged);
  command
      ->add_option("--in-at-least", options->inAtLeast,
                   "genomes that must have it, instead of all")
      ->check(CLI::Range(uint32_t{2}, uint32_t{INT32_MAX}))
      ->type_name("N");
  CLI::Option* mums = command->add_flag(
      "--mums", options->mums,
      "print the matches that occur once in each genome and can be extended on "
      "neither side");
  command
      ->add_option("--min-length", options->minLength,
                   "characters of the shortest of these")
      ->check(CLI::Range(uint32_t{1}, uint32_t{INT32_MAX}))
      ->needs(mums)
      ->capture_default_str();
  command->add_flag("--json", options->json, "print a JSON object a line");
  addJobs(*command, options->jobs);
  command->callback([options] { shared(*options); });
}

}  // namespace kit
