// Writes what a data folder holds beside the suffix arrays: the packed strings
// of each, and what describes them all.

#ifndef PALVOR_KIT_PREPARE_FOLDER_WRITER_H_
#define PALVOR_KIT_PREPARE_FOLDER_WRITER_H_

#include <cstdint>
#include <vector>

#include "kit/output_file.h"
#include "kit/prepare/data_folder.h"
#include "kit/prepare/folder_base.h"
#include "kit/prepare/psa_text.h"

namespace kit {

// Writes the packed strings of one array's inputs. Threads may call it at once
// for different arrays. Throws std::system_error, which names the file.
void writeStrings(const DataFolder& folder, const PsaText& psa);

// Gathers what the lengths files and the table of inputs say. The arrays must
// be added in the order of their numbers, by one thread at a time.
class FolderIndex {
 public:
  // What the base has comes first.
  FolderIndex(const DataFolder& folder, const FolderBase& base);

  void add(const PsaText& psa);

  // Writes the files, the lengths file last: from then on the folder is whole.
  void commit();

 private:
  const DataFolder& folder_;
  OutputFile table_;
  std::vector<uint32_t> lengths_;       // per input, in characters
  std::vector<uint32_t> inputsPerPsa_;  // per suffix array
};

}  // namespace kit

#endif  // PALVOR_KIT_PREPARE_FOLDER_WRITER_H_
