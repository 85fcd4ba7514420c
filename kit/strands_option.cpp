#include "kit/strands_option.h"

#include <CLI/CLI.hpp>
#include <map>
#include <string>

namespace kit {

void addStrands(CLI::App& command, bool& bothStrands) {
  command
      .add_option("--strands", bothStrands,
                  "the inputs as they stand, or each followed by its reverse "
                  "complement as an input of its own")
      ->transform(
          CLI::CheckedTransformer(
              std::map<std::string, bool>{{"forward", false}, {"both", true}})
              .description(""))
      ->type_name("forward|both")
      ->default_str("forward");
}

}  // namespace kit
