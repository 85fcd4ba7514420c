#include "kit/commands.h"

namespace kit {

void addCommands(CLI::App& app) {
  addBuild(app);
  addAdd(app);
  addStatus(app);
  addPrepare(app);
  addMerge(app);
  addPlan(app);
  addJoin(app);
  addCheck(app);
  addSimulate(app);
  addView(app);
  addPangenome(app);
  addFind(app);
  addDistance(app);
  addShared(app);
  addMarkers(app);
  addReport(app);
  addExport(app);
  addCompletion(app);
  addHelp(app);
}

}  // namespace kit
