// A data folder on disk, made of plain arrays byte by byte: what the program
// reads is not written by code of its own. A test may then damage it.

#ifndef PALVOR_TESTS_SUPPORT_DATA_FOLDER_H_
#define PALVOR_TESTS_SUPPORT_DATA_FOLDER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "support/plain_arrays.h"
#include "support/program.h"
#include "support/temporary_folder.h"

// 32-bit words as a file holds them.
std::string bytesOf(const std::vector<uint32_t>& words);

class DataFolder {
 public:
  // Makes a temporary folder with the data folder x.ST/ in it: lengths,
  // strings, suffix arrays, LCP files, and a partitions file if there are
  // partitions.
  explicit DataFolder(const Collection& collection);

  // The temporary folder, "/" included: the program's first argument, the
  // second being "x".
  const std::string& root() const { return root_; }

  // Runs palvor on it, with these options, parted by blanks.
  Outcome merge(const std::string& options, const Setting& setting = {}) const;

  // The same, which must succeed without a word on standard output; and
  // palvor-kit check must prove everything that the folder then holds.
  void expectMerge(const std::string& options) const;

  // A file of x.ST/ by its name, like "x_0.stpsa".
  std::string path(const std::string& name) const;

  void write(const std::string& name, const std::string& bytes) const;
  void writeWords(const std::string& name,
                  const std::vector<uint32_t>& words) const;
  bool holds(const std::string& name) const;
  std::string bytes(const std::string& name) const;

 private:
  TemporaryFolder folder_;
  std::string root_ = folder_.path("");
};

#endif  // PALVOR_TESTS_SUPPORT_DATA_FOLDER_H_
