// What is in a result's folder.

#ifndef PALVOR_KIT_BUILD_STATUS_H_
#define PALVOR_KIT_BUILD_STATUS_H_

#include <string>

namespace kit {

struct StatusOptions {
  std::string result;
  bool checksums = false;  // read all files, instead of asking for their sizes
  int jobs = 1;            // threads that read
  bool json = false;
};

// Prints what the result is made of and by which version, each file that is
// not as it was written, and what an interrupted run has left beside it. Throws
// std::exception unless the result is there and whole.
void printStatus(const StatusOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_STATUS_H_
