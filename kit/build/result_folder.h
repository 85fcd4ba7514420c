// The folder that palvor-kit build leaves: a data folder with what was merged
// from it, a manifest, and checksums.

#ifndef PALVOR_KIT_BUILD_RESULT_FOLDER_H_
#define PALVOR_KIT_BUILD_RESULT_FOLDER_H_

#include <cstdint>
#include <string>

namespace kit {

constexpr const char* kResultPrefix = "data";  // of its data folder, data.ST
constexpr const char* kResultManifest = "manifest.json";
constexpr const char* kResultSums = "SHA256SUMS";

// Where the manifest is until the result is whole.
constexpr const char* kUnfinishedManifest = "unfinished.json";

// Paths of a result, which end in no "/".
class ResultFolder {
 public:
  // Whether a path's last part is a name that a result can have.
  static bool canBe(const std::string& path);

  // Throws std::runtime_error if it is not.
  explicit ResultFolder(const std::string& path);

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const { return path_ + "/" + name; }

  // The folder beside it in which it is built, under its temporary name.
  ResultFolder unfinished() const;

  // The data folder's files, as far as their kind, such as ".stpsa".
  std::string dataBase() const;

  // What is wrong with one of its files, by its size; nothing if it has so many
  // bytes. Throws FileError if the system does not say.
  std::string faultOf(const std::string& name, uint64_t bytes) const;

  // Whether a whole result is there. Throws FileError if the system does not
  // say.
  bool isResult() const;

 private:
  std::string path_;
};

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_RESULT_FOLDER_H_
