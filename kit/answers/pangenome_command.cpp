// The command line of palvor-kit pangenome.

#include <memory>

#include "kit/answers/pangenome.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"

namespace kit {

void addPangenome(CLI::App& app) {
  auto options = std::make_shared<PangenomeOptions>();
  CLI::App* command = app.add_subcommand(
      "pangenome",
      "Tell how many k-mers the genomes of a merged array share, for every k: "
      "how many occur in 1, 2, ... genomes, what more genomes add, what all "
      "have in common.");
  addMergedOptions(*command, options->merged);
  addPangenomeChoice(*command, options->choice, nullptr);
  addJobs(*command, options->jobs);
  command->callback([options] { pangenome(*options); });
}

}  // namespace kit
