// The subcommands of palvor-kit. Each adds itself, with its options and what it
// does, to the program; what it does throws std::exception on failure. A
// command's line stands in <name>_command.cpp, its work in <name>.h.

#ifndef PALVOR_KIT_COMMANDS_H_
#define PALVOR_KIT_COMMANDS_H_

#include <CLI/CLI.hpp>

namespace kit {

// Adds all of them, in the order in which they are listed.
void addCommands(CLI::App& app);

void addAdd(CLI::App& app);
void addBuild(CLI::App& app);
void addCheck(CLI::App& app);
void addCompletion(CLI::App& app);
void addDistance(CLI::App& app);
void addExport(CLI::App& app);
void addFind(CLI::App& app);
void addHelp(CLI::App& app);  // shows the help of the others
void addJoin(CLI::App& app);
void addMerge(CLI::App& app);
void addMarkers(CLI::App& app);
void addPangenome(CLI::App& app);
void addPlan(CLI::App& app);
void addPrepare(CLI::App& app);
void addReport(CLI::App& app);
void addShared(CLI::App& app);
void addSimulate(CLI::App& app);
void addStatus(CLI::App& app);
void addView(CLI::App& app);

}  // namespace kit

#endif  // PALVOR_KIT_COMMANDS_H_
