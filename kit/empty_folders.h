// Folders that a command makes for its results, and takes away again when it
// has put nothing into them.

#ifndef PALVOR_KIT_EMPTY_FOLDERS_H_
#define PALVOR_KIT_EMPTY_FOLDERS_H_

#include <filesystem>
#include <vector>

namespace kit {

class EmptyFolders {
 public:
  // To be made before the folder is: remembers it, and all above it that are
  // not there yet.
  explicit EmptyFolders(const std::filesystem::path& folder);

  // Removes those of them that are empty, unless the command came to its end.
  ~EmptyFolders();

  // To be called when the folder is whole.
  void keep() { missing_.clear(); }

  EmptyFolders(const EmptyFolders&) = delete;
  EmptyFolders& operator=(const EmptyFolders&) = delete;

 private:
  std::vector<std::filesystem::path> missing_;  // the innermost first
};

}  // namespace kit

#endif  // PALVOR_KIT_EMPTY_FOLDERS_H_
