// manifest.json: what a result was made of, what it holds, and how that went.

#ifndef PALVOR_KIT_BUILD_RESULT_MANIFEST_H_
#define PALVOR_KIT_BUILD_RESULT_MANIFEST_H_

#include <cstdint>
#include <string>
#include <vector>

namespace kit {

// A file and the SHA-256 of what is in it, hexadecimal.
struct StoredFile {
  std::string file;  // of outputs, as seen from the result's folder
  uint64_t bytes = 0;
  std::string sha256;

  bool operator==(const StoredFile&) const = default;
};

struct ResultInput {
  StoredFile stored;  // its name as it was given
  uint64_t records = 0;
  uint64_t strings = 0;     // input strings that they gave
  uint64_t characters = 0;  // of these
};

// What differs between runs that make the same.
struct RunFigures {
  int jobs = 0;
  uint64_t memory = 0;      // that it was allowed, in bytes
  uint64_t peakMemory = 0;  // that it took
  bool resumed = false;     // then all figures are those of the last run
  double prepare = 0, merge = 0, checksums = 0, check = 0, all = 0;  // seconds
};

struct ResultManifest {
  std::string version;  // of the program
  std::string command;
  bool trees = false;        // instead of an array
  bool bothStrands = false;  // of each input
  std::vector<ResultInput> inputs;
  uint64_t suffixes = 0;
  std::vector<StoredFile> outputs;  // empty: not yet complete
  std::string checked;              // what was proved, in words; empty: nothing
  RunFigures run;
};

// The input files that gave strings.
uint64_t genomesOf(const ResultManifest& manifest);

// Throws FileError if it is not there or not as `write` leaves it.
ResultManifest readResultManifest(const std::string& path);

// Throws std::system_error, which names the file.
void writeResultManifest(const ResultManifest& manifest,
                         const std::string& path);

// Whether both make the same of the same files, of whatever contents.
bool samePlan(const ResultManifest& a, const ResultManifest& b);

// Whether the inputs' contents are the same, too.
bool sameInputs(const ResultManifest& a, const ResultManifest& b);

// A file's name as a manifest can hold it: what is no UTF-8 is replaced.
std::string nameInManifest(const std::string& file);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_RESULT_MANIFEST_H_
