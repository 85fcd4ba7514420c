// What a saved log tells of the run that a merged order comes from.

#ifndef PALVOR_KIT_ANSWERS_RUN_LOG_H_
#define PALVOR_KIT_ANSWERS_RUN_LOG_H_

#include <string>
#include <vector>

namespace kit {

struct RunFigure {
  std::string name;  // "wall time"
  double value;
  std::string unit;  // "s", "bytes", or empty
};

// Reads what palvor wrote to standard error, or what GNU time -v did, or both
// in one file; lines of others are passed over. Throws FileError if it cannot
// be read, is larger than 64 MB, or has no figure.
std::vector<RunFigure> readRunLog(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_RUN_LOG_H_
