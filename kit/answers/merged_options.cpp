#include "kit/answers/merged_options.h"

#include <CLI/CLI.hpp>

#include "kit/folders.h"

namespace kit {

std::string MergedOptions::dataBase() const {
  return kit::dataBase(inputdir, prefix);
}

std::string MergedOptions::mergedBase() const {
  return kit::dataBase(odir.empty() ? inputdir : odir,
                       opfx.empty() ? prefix : opfx);
}

void addMergedOptions(CLI::App& command, MergedOptions& options) {
  command
      .add_option(
          "inputdir", options.inputdir,
          "palvor's input folder, or a result of build in place of both")
      ->required();
  command.add_option("prefix", options.prefix, "palvor's input file prefix")
      ->required();
  command.add_option("-o", options.odir, "output folder, as palvor's -o");
  command.add_option("-p", options.opfx, "output prefix, as palvor's -p");
  command
      .add_option("-N", options.nmerge,
                  "only the first so many inputs were merged, as palvor's -N")
      ->check(CLI::Range(uint64_t{1}, uint64_t{INT32_MAX}));
  command
      .add_option("--groups", options.groups,
                  "table of genomes: file or record, its genome, and the "
                  "genome's group, if it has one, parted by tabs; without it "
                  "each file is a genome")
      ->type_name("TSV");
}

}  // namespace kit
