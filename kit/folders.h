// Folders for what is written, and files that go.

#ifndef PALVOR_KIT_FOLDERS_H_
#define PALVOR_KIT_FOLDERS_H_

#include <string>

namespace kit {

// Creates a folder, and those above it, where missing. Throws FileError.
void createFolders(const std::string& path);

// Removes a file, if it is there. Throws FileError.
void removeFile(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_FOLDERS_H_
