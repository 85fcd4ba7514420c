// The command line of palvor-kit prepare.

#include <memory>
#include <string>

#include "kit/commands.h"
#include "kit/jobs_option.h"
#include "kit/memory_option.h"
#include "kit/prepare/prepare.h"
#include "kit/strands_option.h"
#include "kit/word_choice.h"

namespace kit {

void addPrepare(CLI::App& app) {
  auto options = std::make_shared<PrepareOptions>();
  CLI::App* command = app.add_subcommand(
      "prepare",
      "Turn FASTA or FASTQ files into a data folder, DIR/PREFIX.ST/, and print "
      "the palvor command that merges it.");
  command
      ->add_option("-o,--output", options->directory,
                   "directory of the data folder")
      ->type_name("DIR")
      ->required();
  command
      ->add_option("-p,--prefix", options->prefix,
                   "name of the data folder, and start of its files' names")
      ->type_name("PREFIX")
      ->required();
  command
      ->add_option("files", options->files,
                   "sequence files, plain or compressed; - is standard input")
      ->type_name("FASTA")
      ->required();
  command
      ->add_option("--psa-per", options->rules.psaPerRecord,
                   "one suffix array for each file, or each record")
      ->transform(oneOf<bool>({{"file", false}, {"record", true}}))
      ->type_name("file|record")
      ->default_str("file");
  addStrands(*command, options->rules.bothStrands);
  command
      ->add_option("--ambiguous", options->rules.ambiguous,
                   "at characters other than A, C, G and T: split the input "
                   "string, skip the whole record, or stop")
      ->transform(oneOf<Ambiguous>({{"split", Ambiguous::kSplit},
                                    {"skip-record", Ambiguous::kSkipRecord},
                                    {"error", Ambiguous::kError}}))
      ->type_name("split|skip-record|error")
      ->default_str("split");
  command->add_flag("--lcp", options->format.withLcp,
                    "write LCP files too, for palvor's -Z");
  command->add_flag("--zero-origin", options->format.zeroOrigin,
                    "number the inputs from zero inside each suffix array, for "
                    "palvor's -z");
  addJobs(*command, options->jobs);
  addMemoryOption(*command, options->memory,
                  "memory to do with, such as 4G: longer texts are gone "
                  "through several times");
  command->add_flag("--force-space", options->forceSpace,
                    "go on where the disk seems too small");
  command->add_flag("--force", options->force,
                    "replace all files of this prefix in the data folder, "
                    "merged results included");
  command->callback([options] { prepare(*options); });
}

}  // namespace kit
