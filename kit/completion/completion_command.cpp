// The command line of palvor-kit completion.

#include <memory>
#include <string>

#include "kit/commands.h"
#include "kit/completion/completion.h"
#include "kit/standard_output.h"
#include "kit/word_choice.h"

namespace kit {

void addCompletion(CLI::App& app) {
  auto shell = std::make_shared<Shell>();
  CLI::App* command = app.add_subcommand(
      "completion",
      "Print the script by which a shell completes this program's words. "
      "Installed packages bring it along.");
  command->add_option("shell", *shell, "the shell")
      ->transform(oneOf<Shell>({{"bash", Shell::kBash},
                                {"zsh", Shell::kZsh},
                                {"fish", Shell::kFish}}))
      ->type_name("bash|zsh|fish")
      ->required();
  command->callback([shell, &app] {
    writeOutput(completionScript(app, *shell));
    finishOutput();
  });
}

}  // namespace kit
