// SHA-256 of files, by which a result's files can be tested anywhere.

#ifndef PALVOR_KIT_BUILD_CHECKSUMS_H_
#define PALVOR_KIT_BUILD_CHECKSUMS_H_

#include <string>
#include <vector>

#include "kit/build/result_manifest.h"
#include "kit/progress.h"

namespace kit {

struct SummingMeans {
  int jobs = 1;      // threads, which take a file each
  std::string what;  // is shown
  ProgressStyle progress = {};
};

// Reads all files, whose names begin with `start`, and returns them with their
// sizes and checksums. Throws FileError.
std::vector<StoredFile> sumFiles(const std::string& start,
                                 const std::vector<std::string>& files,
                                 const SummingMeans& means);

// The files' names.
std::vector<std::string> namesOf(const std::vector<StoredFile>& files);

// Writes a file that sha256sum -c reads. Throws std::system_error.
void writeSums(const std::vector<StoredFile>& files, const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_CHECKSUMS_H_
