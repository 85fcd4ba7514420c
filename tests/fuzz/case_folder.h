// The temporary folder of one case, and the data folder that bytes make in it.
//
// The data folder, x.ST/, is written from sections until the bytes end:
//
//   offset  size  meaning
//   0       1     kind of file in the high four bits, number in the low four
//   1       2     length in bytes, little-endian; more than is left: the rest
//   3       -     bytes of the file; of several sections they are joined
//
//   kind   file                kind   file
//   0      x.stlengths         5      x_<number>.stlcp
//   1      x.stblengths        6      x.stpsa
//   2      x.stplengths        7      x.stlcp
//   3      x_<number>.stbin    8      x.stdiv
//   4      x_<number>.stpsa    9      x_<number>.stree
//
// Other kinds begin again at 0, and their numbers at 16: kind 13 and number 2
// are x_18.stbin.

#ifndef PALVOR_TESTS_FUZZ_CASE_FOLDER_H_
#define PALVOR_TESTS_FUZZ_CASE_FOLDER_H_

#include <string>
#include <string_view>
#include <vector>

#include "fuzz_input.h"

class CaseFolder {
 public:
  // `root` ends in "/". Nothing is made yet.
  explicit CaseFolder(std::string root) : root_(std::move(root)) {}

  // The folder, "/" included: palvor's first argument, the second being "x".
  const std::string& root() const { return root_; }

  // Makes it empty, with an empty x.ST/ in it, whatever was there.
  void renew() const;
  void remove() const;

  // Writes the files of x.ST/ from sections, and returns their paths.
  std::vector<std::string> fill(FuzzInput& input) const;

  // Path of a file, like "x.ST/x_0.stpsa".
  std::string path(const std::string& name) const { return root_ + name; }

  void write(const std::string& name, std::string_view bytes) const;

  // A file's bytes; none if there is no such file.
  std::string read(const std::string& name) const;

 private:
  std::string root_;
};

#endif  // PALVOR_TESTS_FUZZ_CASE_FOLDER_H_
