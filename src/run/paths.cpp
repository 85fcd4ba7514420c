#include "run/paths.h"

#include "run/options.h"
#include "support/paths.h"

namespace {

constexpr const char* kFolderSuffix = ".ST";

char* orDefault(char* given, char* otherwise) {
  return given != nullptr ? given : otherwise;
}

void testNumberedPath(const char* prefix, int count, const char* kind) {
  if (count == 0) return;
  char path[kPathSize];
  formatPath(path, kPathSize, "%s_%d%s", prefix, count - 1, kind);
}

}  // namespace

RunPaths composePaths(const PathArguments& arguments) {
  const char* inputdir = arguments.inputdir;
  const char* inputfileprefix = arguments.inputfileprefix;
  const char* odir = orDefault(arguments.odir, arguments.inputdir);
  const char* opfx = orDefault(arguments.opfx, arguments.inputfileprefix);
  const char* sdir = orDefault(arguments.sdir, arguments.inputdir);
  const char* spfx = orDefault(arguments.spfx, arguments.inputfileprefix);

  RunPaths paths;
  formatPath(stringPrefix, kPathSize, "%s%s%s/%s", inputdir, inputfileprefix,
             kFolderSuffix, inputfileprefix);
  formatPath(paths.lengthsFile, kPathSize, "%s%s", stringPrefix, ".stlengths");
  formatPath(paths.blengthsFile, kPathSize, "%s%s", stringPrefix,
             ".stblengths");
  // In the folder of the suffix arrays, but named after the inputs.
  formatPath(plengthsFileName, kPathSize, "%s%s%s/%s%s", sdir, spfx,
             kFolderSuffix, inputfileprefix, ".stplengths");
  formatPath(sarrayPrefix, kPathSize, "%s%s%s/%s", sdir, spfx, kFolderSuffix,
             spfx);
  formatPath(paths.outputFolder, kPathSize, "%s%s%s/", odir, opfx,
             kFolderSuffix);
  formatPath(streePrefix, kPathSize, "%s%s", paths.outputFolder, opfx);
  formatPath(paths.dividersFile, kPathSize, "%s%s", streePrefix, ".stdiv");
  return paths;
}

void testNumberedPaths() {
  testNumberedPath(stringPrefix, ninputs, ".stbin");
  testNumberedPath(sarrayPrefix, streamCount(), ".stpsa");
  if (Manzini != 0) testNumberedPath(sarrayPrefix, streamCount(), ".stlcp");
}
