// The command line of palvor-kit export.

#include <memory>
#include <string>

#include "kit/answers/export.h"
#include "kit/commands.h"
#include "kit/word_choice.h"

namespace kit {

void addExport(CLI::App& app) {
  auto options = std::make_shared<ExportOptions>();
  CLI::App* command = app.add_subcommand(
      "export",
      "Write a merged array to standard output as other programs read it: the "
      "Burrows-Wheeler transform as text, or the suffix array, the common "
      "prefixes or the documents as plain numbers.");
  addMergedOptions(*command, options->merged);
  command->remove_option(command->get_option("--groups"));
  command->add_option("array", options->array, "what to write")
      ->transform(oneOf<ExportedArray>({{"bwt", ExportedArray::kBwt},
                                        {"sa", ExportedArray::kSa},
                                        {"lcp", ExportedArray::kLcp},
                                        {"da", ExportedArray::kDa}}))
      ->type_name("bwt|sa|lcp|da")
      ->required();
  command
      ->add_option("--width", options->width,
                   "bytes of a number, 4, 5 or 8, the lowest first")
      ->check(CLI::IsMember({4, 5, 8}).description(""))
      ->type_name("4|5|8")
      ->capture_default_str();
  command->add_flag("--npy", options->npy,
                    "with a header, as a .npy file for numpy");
  command->add_flag("--newline", options->newline,
                    "write newlines for the terminators of the bwt, instead of "
                    "$");
  command->callback([options] { exportArray(*options); });
}

}  // namespace kit
