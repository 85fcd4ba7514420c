// From sequence files to a proved result, in one command.

#ifndef PALVOR_KIT_BUILD_BUILD_H_
#define PALVOR_KIT_BUILD_BUILD_H_

#include <cstdint>
#include <string>
#include <vector>

namespace kit {

struct BuildOptions {
  std::string result;              // the folder that is to be there
  std::vector<std::string> files;  // sequences
  int jobs = 0;                    // threads; 0: one for each core
  uint64_t memory = 0;             // bytes; 0: half of what the machine has
  bool trees = false;              // instead of an array
  bool bothStrands = false;        // of each input
  bool check = true;               // prove the result
  bool restart = false;            // keep nothing that is there
  bool quiet = false;
  std::string command;  // as it is put down in the manifest
};

// Prepares, merges, sums up and proves, under a temporary name, which is given
// up when all is done: a result is whole or not there. What an interrupted run
// has left is gone on with. Says on standard error what it needs and does, and
// on standard output what there is at the end. Throws std::exception.
void build(const BuildOptions& options);

// Makes of an existing result and more sequence files what `build` makes of all
// files, without preparing the old ones again; trees and strands are as in the
// result. It takes the old one's place when it is whole.
void addTo(const BuildOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_BUILD_H_
