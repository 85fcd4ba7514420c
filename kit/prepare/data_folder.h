// The data folder of a prefix: DIR/PREFIX.ST/, and what is in it.

#ifndef PALVOR_KIT_PREPARE_DATA_FOLDER_H_
#define PALVOR_KIT_PREPARE_DATA_FOLDER_H_

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace kit {

class DataFolder {
 public:
  // Throws std::runtime_error for a prefix that is empty or holds a "/", and
  // for paths so long that palvor would refuse them.
  DataFolder(const std::string& directory, const std::string& prefix);

  // The directory, with a "/" at its end: palvor's first argument.
  const std::string& directory() const { return directory_; }
  const std::string& prefix() const { return prefix_; }

  // The folder itself, without a "/" at its end.
  std::string path() const { return directory_ + prefix_ + ".ST"; }

  // Path of the folder's one file of a kind, such as ".stlengths", or of the
  // numbered one, such as ".stbin".
  // Throws std::runtime_error if palvor would refuse a path of that length.
  std::string path(const std::string& kind) const;
  std::string path(uint64_t number, const std::string& kind) const;

  // The name of a numbered file in the folder.
  std::string name(uint64_t number, const std::string& kind) const;

  // Removes the files of this prefix whose names in the folder, which must be
  // there, are not among these. Throws FileError.
  void removeAllBut(const std::set<std::string>& names) const;

  // Creates the folder, and the directories above it, where missing. If it
  // holds files of this prefix already, removes them with `force`, the lengths
  // file first, and otherwise throws std::runtime_error.
  void create(bool force) const;

 private:
  // The files of this prefix in the folder, which must be there.
  std::vector<std::filesystem::path> filesThere() const;

  std::string directory_;
  std::string prefix_;
  std::string folder_;
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_DATA_FOLDER_H_
