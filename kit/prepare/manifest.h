// PREFIX.manifest.tsv: which suffix arrays a folder holds, of what, and their
// checksums. A run that was interrupted is resumed by it: an array of the same
// inputs whose files are as they were written is not made again.
//
// Text, fields with tabs between them. The first line is the word "options" and
// how the run was called, but for what changes no array. Each other line is a
// file that is complete: its name in the folder, its bytes, its checksum
// (XXH3, 64 bits, hexadecimal), the checksum of what it was made of (the packed
// inputs, their lengths and the number of the first), and the source file. A
// line is appended when the file has got its name.

#ifndef PALVOR_KIT_PREPARE_MANIFEST_H_
#define PALVOR_KIT_PREPARE_MANIFEST_H_

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/prepare/psa_text.h"

namespace kit {

struct ManifestEntry {
  std::string name;  // of the file, in the folder
  uint64_t bytes = 0;
  std::string checksum;
  std::string inputs;  // checksum of what it was made of
  std::string source;  // file that the inputs come from
};

class Manifest {
 public:
  // Of the folder `folder`; `path` is the manifest's own. Nothing is read or
  // written yet.
  Manifest(std::string folder, std::string path, std::string options);

  // Takes over what an interrupted run with the same options has left. False if
  // there is nothing, or of other options. Throws std::system_error, which
  // names the file, if there is one that cannot be opened.
  bool resume();

  // Whether there is something to resume; names of its files.
  bool resumed() const { return !found_.empty(); }
  std::set<std::string> names() const;

  // The files that a manifest lists. Throws FileError if it can't be read.
  static std::vector<ManifestEntry> listedIn(const std::string& path);

  // Takes over files that need no line until `finish`.
  void adopt(const std::vector<ManifestEntry>& entries);

  // Writes the first line, in place of what is there.
  // Throws std::system_error, which names the file; so do `add` and `finish`.
  void begin() const;

  // Whether a file is there as it was written, and made of the same inputs.
  // Reads all of the file. Threads may ask side by side.
  bool stands(const std::string& name, const std::string& inputs) const;

  // Takes over the line of a file that stands.
  void keep(const std::string& name) { lines_[name] = found_.at(name); }

  // Whether it lists no file at all.
  bool empty() const { return found_.empty() && lines_.empty(); }

  // Appends lines.
  void add(const std::vector<ManifestEntry>& entries);

  // Writes the manifest anew, with all that was added or kept, and returns the
  // names of files that `resume` found and that are none of these.
  std::vector<std::string> finish() const;

 private:
  void append(const std::string& lines, int flags) const;

  std::string folder_;
  std::string path_;
  std::string options_;
  std::map<std::string, ManifestEntry> found_;  // by name, as are the lines
  std::map<std::string, ManifestEntry> lines_;
};

// The checksum of an array's inputs.
std::string checksumOfInputs(const PsaText& psa);

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_MANIFEST_H_
