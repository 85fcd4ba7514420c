// The command line of palvor-kit help.

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "kit/commands.h"
#include "kit/standard_output.h"
#include "kit/usage_error.h"

namespace kit {

void addHelp(CLI::App& app) {
  auto name = std::make_shared<std::string>();
  CLI::App* command =
      app.add_subcommand("help", "Show what a command does and takes.");
  command->add_option("command", *name, "a command")->type_name("");
  command->callback([name, &app] {
    const auto named = [&](const CLI::App* c) {
      return c->get_name() == *name;
    };
    const auto found = std::as_const(app).get_subcommands(named);
    if (found.empty() && !name->empty()) {
      throw std::runtime_error(unknownCommand(app, *name));
    }
    // App::help would show the help of this command, which is the chosen one.
    const CLI::App* about = name->empty() ? &app : found[0];
    writeOutput(about->get_formatter()->make_help(
        about, name->empty() ? app.get_name() : app.get_name() + " " + *name,
        CLI::AppFormatMode::Normal));
    finishOutput();
  });
}

}  // namespace kit
