// The command line of palvor-kit view.

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>

#include "kit/commands.h"
#include "kit/view/view.h"

namespace kit {
namespace {

// The parser would take -1 for a very large number.
std::string refuseSigns(const std::string& number) {
  const bool digits =
      std::all_of(number.begin(), number.end(),
                  [](unsigned char c) { return std::isdigit(c) != 0; });
  return digits ? "" : fmt::format("'{}' is not a number from 0 on", number);
}

}  // namespace

void addView(CLI::App& app) {
  auto options = std::make_shared<ViewOptions>();
  CLI::App* command = app.add_subcommand(
      "view",
      "Print what palvor's files hold, as tab-separated text. The end of a "
      "file's name tells its kind: .stpsa .stlcp .stdiv .stree .stlengths "
      ".stblengths .stplengths .stbin .inputs.tsv. Packed words are shown as "
      "16 characters, zero bits past the end of a text as A. Where the table "
      "of inputs is found, genomes, sequences and places in them are named.");
  command->add_option("files", options->files, "files to print")
      ->type_name("FILE")
      ->required();
  CLI::Option* json =
      command->add_flag("--json", options->json, "print JSON lines");
  CLI::Option* from =
      command
          ->add_option("--from", options->from, "first record to print, from 0")
          ->check(refuseSigns)
          ->capture_default_str();
  CLI::Option* count = command
                           ->add_option("--count", options->count,
                                        "most records to print of each file")
                           ->check(refuseSigns);
  command
      ->add_flag("--dot", options->dot, "draw small .stree files as Graphviz")
      ->excludes(json)
      ->excludes(from)
      ->excludes(count);
  command
      ->add_option("--data", options->dataFolder,
                   "data folder, DIR/PREFIX.ST, that the files were made of, "
                   "for names and drawn characters")
      ->type_name("FOLDER");
  command->add_flag("-z", options->zeroOrigin,
                    "inputs are numbered from zero in every suffix array");
  command->callback([options] { view(*options); });
}

}  // namespace kit
