// The stages of a build, in the folder in which the result is made.

#ifndef PALVOR_KIT_BUILD_BUILD_STAGES_H_
#define PALVOR_KIT_BUILD_BUILD_STAGES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/build/build_means.h"
#include "kit/build/result_folder.h"
#include "kit/build/result_manifest.h"
#include "kit/prepare/prepare.h"

namespace kit {

// A result whose genomes come first in another one.
struct ResultBefore {
  ResultFolder folder;
  ResultManifest manifest;
};

class BuildStages {
 public:
  // All must outlive this. The manifest is filled in, and written to the folder
  // whenever a stage has ended that need not be done again then.
  BuildStages(const BuildOptions& options, const BuildMeans& means,
              const ResultFolder& folder, const ResultBefore* before,
              ResultManifest& manifest)
      : options_(options),
        means_(means),
        folder_(folder),
        before_(before),
        manifest_(manifest) {}

  // Does all that is still to be done; `characters`: about as many as there are
  // to be prepared. Throws std::exception.
  void run(uint64_t characters);

 private:
  bool sumsStand();
  void prepare(uint64_t characters);
  void countInputs();
  void merge();
  void sum();
  void testTakenOver() const;
  void check();
  ProgressStyle progress(int stage) const;
  std::vector<std::string> dataFiles() const;
  void say(const std::string& text) const;
  void save() const;

  const BuildOptions& options_;
  const BuildMeans& means_;
  const ResultFolder& folder_;
  const ResultBefore* before_;
  ResultManifest& manifest_;
};

// How all commands of builds show how far they are.
ProgressStyle buildProgress(const std::string& stage, bool quiet);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_BUILD_STAGES_H_
