// The folder in which a result is made, held by one run at a time.

#ifndef PALVOR_KIT_BUILD_UNFINISHED_FOLDER_H_
#define PALVOR_KIT_BUILD_UNFINISHED_FOLDER_H_

#include <optional>

#include "kit/build/result_folder.h"
#include "kit/build/result_manifest.h"

namespace kit {

class UnfinishedFolder {
 public:
  // Of a result. Creates the folder, if it is not there, and holds it. Throws
  // FileError if another run does, and if it is not one that a build has left.
  explicit UnfinishedFolder(const ResultFolder& result);
  ~UnfinishedFolder();
  UnfinishedFolder(const UnfinishedFolder&) = delete;
  UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

  const ResultFolder& folder() const { return folder_; }

  // What an interrupted run has put down; nothing if there is none.
  std::optional<ResultManifest> found() const;

  // Removes all that is in it.
  void clear() const;

  // Makes a whole result of it, by this manifest, and gives it its name, in
  // place of a result that has it.
  void publish(const ResultManifest& manifest);

  // Removes it.
  void remove();

 private:
  void giveName() const;
  void sync() const;

  ResultFolder result_;
  ResultFolder folder_;
  int descriptor_ = -1;
};

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_UNFINISHED_FOLDER_H_
