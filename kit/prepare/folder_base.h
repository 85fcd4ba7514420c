// A finished data folder whose inputs come first in another one: its suffix
// arrays are taken over, and not made again.

#ifndef PALVOR_KIT_PREPARE_FOLDER_BASE_H_
#define PALVOR_KIT_PREPARE_FOLDER_BASE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/prepare/data_folder.h"
#include "kit/prepare/manifest.h"

namespace kit {

struct FolderBase {
  std::vector<uint32_t> lengths;       // per input, in characters
  std::vector<uint32_t> inputsPerPsa;  // per suffix array
  std::string table;                   // of inputs, as it stands in the file
  std::vector<ManifestEntry> arrays;   // the suffix arrays' files
};

// Reads what describes a finished folder. Throws FileError, which names the
// file, if one is missing.
FolderBase readBase(const DataFolder& folder);

// Puts the strings of so many inputs of a folder, and these arrays, into
// another one of the same prefix, in place of what is there by those names: by
// a second name for the same file (a hard link), or else by a copy. Throws
// FileError.
void takeOver(const DataFolder& from, const FolderBase& base,
              const DataFolder& to);

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_FOLDER_BASE_H_
