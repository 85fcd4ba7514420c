// Folders for what is written.

#ifndef PALVOR_KIT_FOLDERS_H_
#define PALVOR_KIT_FOLDERS_H_

#include <string>

namespace kit {

// Creates a folder, and those above it, where missing. Throws FileError.
void createFolders(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_FOLDERS_H_
