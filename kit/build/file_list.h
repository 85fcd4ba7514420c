// Files that are named in a file, where they are too many for a command line.

#ifndef PALVOR_KIT_BUILD_FILE_LIST_H_
#define PALVOR_KIT_BUILD_FILE_LIST_H_

#include <string>
#include <vector>

namespace kit {

// The files that a list names, one a line; empty lines are passed over. Throws
// FileError.
std::vector<std::string> readFileList(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_FILE_LIST_H_
