// The command line of palvor-kit markers.

#include <cstdint>
#include <memory>

#include "kit/answers/marker_table.h"
#include "kit/answers/markers.h"
#include "kit/commands.h"
#include "kit/jobs_option.h"

namespace kit {

void addMarkers(CLI::App& app) {
  auto options = std::make_shared<MarkersOptions>();
  CLI::App* command = app.add_subcommand(
      "markers",
      "Find the shortest substrings that all genomes of a group have and none "
      "of another, or those that tell each genome from all others.");
  addMergedOptions(*command, options->merged);
  CLI::Option* in =
      command
          ->add_option("--in", options->in, "group, or genome, that has them")
          ->type_name("GROUP");
  CLI::Option* out =
      command
          ->add_option("--out", options->out,
                       "group, or genome, that has not; without it, all other "
                       "genomes")
          ->type_name("GROUP")
          ->needs(in);
  CLI::Option* minFraction =
      command
          ->add_option("--min-fraction", options->minFraction,
                       "part of --in's genomes that must have them")
          ->check(CLI::Range(0.0, 1.0))
          ->capture_default_str();
  CLI::Option* maxFraction =
      command
          ->add_option("--max-fraction", options->maxFraction,
                       "part of --out's genomes that may have them")
          ->check(CLI::Range(0.0, 1.0))
          ->capture_default_str();
  command
      ->add_flag("--unique", options->unique,
                 "find for each genome the shortest substrings that no other "
                 "one has")
      ->excludes(in)
      ->excludes(out)
      ->excludes(minFraction)
      ->excludes(maxFraction);
  command
      ->add_option("--max-length", options->maxLength,
                   "characters of the longest ones that are looked for")
      ->check(CLI::Range(uint32_t{1}, kLongestMarker))
      ->capture_default_str();
  CLI::Option* fasta = command->add_flag(
      "--fasta", options->fasta,
      "print each in its first place as FASTA, in capitals, what is around it "
      "in small letters");
  command
      ->add_option("--flank", options->flank,
                   "characters of that on either side")
      ->check(CLI::Range(uint32_t{0}, uint32_t{1'000'000}))
      ->needs(fasta)
      ->capture_default_str();
  command->add_flag("--json", options->json, "print a JSON object a line")
      ->excludes(fasta);
  addJobs(*command, options->jobs);
  command->callback([options] { markers(*options); });
}

}  // namespace kit
