// Folders and the files in them: what they are called, what room there is, and
// what is made and removed.

#ifndef PALVOR_KIT_FOLDERS_H_
#define PALVOR_KIT_FOLDERS_H_

#include <cstdint>
#include <optional>
#include <string>

namespace kit {

// Path of a data folder's files as far as their kind: DIR/PREFIX.ST/PREFIX.
//   directory  with a "/" at its end, if it is not empty
std::string dataBase(const std::string& directory, const std::string& prefix);

// Creates a folder, and those above it, where missing. Throws FileError.
void createFolders(const std::string& path);

// Removes a file, if it is there. Throws FileError.
void removeFile(const std::string& path);

// Bytes that can be written to the disk that holds a folder, or will hold it
// once it is made; nothing if the system does not tell.
std::optional<uint64_t> freeSpace(const std::string& folder);

}  // namespace kit

#endif  // PALVOR_KIT_FOLDERS_H_
