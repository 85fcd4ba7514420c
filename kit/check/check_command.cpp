// The command line of palvor-kit check.

#include <cstdint>
#include <memory>

#include "kit/check/check.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"

namespace kit {

void addCheck(CLI::App& app) {
  auto options = std::make_shared<CheckOptions>();
  CLI::App* command = app.add_subcommand(
      "check",
      "Prove a data folder and what palvor made of it, a merged array, suffix "
      "tree partitions or both, from the definitions. Exit status 0 only if "
      "all is right.");
  command
      ->add_option(
          "inputdir", options->inputdir,
          "palvor's input folder, or a result of build in place of both")
      ->required();
  command->add_option("prefix", options->prefix, "palvor's input file prefix")
      ->required();
  command->add_option("-o", options->odir, "output folder, as palvor's -o");
  command->add_option("-p", options->opfx, "output prefix, as palvor's -p");
  command->add_option("-S", options->sdir,
                      "folder of the suffix arrays, as palvor's -S");
  command->add_option("-s", options->spfx,
                      "prefix of the suffix arrays, as palvor's -s");
  command->add_flag("-z", options->zeroOrigin,
                    "inputs are numbered from zero in every suffix array");
  command
      ->add_option("-N", options->nmerge,
                   "only the first so many inputs were merged, as palvor's -N")
      ->check(CLI::Range(uint64_t{1}, uint64_t{INT32_MAX}));
  command->add_flag("--all", options->goOn,
                    "report all faults, instead of stopping at the first");
  command->add_flag("--json", options->json, "report as JSON lines");
  addJobs(*command, options->jobs);
  command
      ->add_option(
          "--range", options->range,
          "prove the part of one range of a plan (see palvor-kit plan) "
          "and nothing else; all ranges that are right are a merge "
          "that is right")
      ->type_name("N");
  command->callback([options] { check(*options); });
}

}  // namespace kit
