// A folder for one test, removed with all that is in it.

#ifndef PALVOR_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
#define PALVOR_TESTS_SUPPORT_TEMPORARY_FOLDER_H_

#include <map>
#include <string>

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Path of a file in the folder, or of one in a folder of it: "x.ST/x_0.stpsa"
  std::string path(const std::string& name) const;

  // Returns the path.
  std::string write(const std::string& name, const std::string& bytes) const;

  std::string read(const std::string& name) const;
  bool holds(const std::string& name) const;

  // The files of a folder in the folder, by name, and what they hold.
  std::map<std::string, std::string> files(const std::string& name) const;

 private:
  std::string root_;
};

#endif  // PALVOR_TESTS_SUPPORT_TEMPORARY_FOLDER_H_
