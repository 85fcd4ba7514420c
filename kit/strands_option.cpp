#include "kit/strands_option.h"

#include <CLI/CLI.hpp>

#include "kit/word_choice.h"

namespace kit {

void addStrands(CLI::App& command, bool& bothStrands) {
  command
      .add_option("--strands", bothStrands,
                  "the inputs as they stand, or each followed by its reverse "
                  "complement as an input of its own")
      ->transform(oneOf<bool>({{"forward", false}, {"both", true}}))
      ->type_name("forward|both")
      ->default_str("forward");
}

}  // namespace kit
