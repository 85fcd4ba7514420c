// Where a merge reads and writes.
//
// Every data folder is <folder><prefix>.ST/, with nothing put between folder
// and prefix, so a folder brings its trailing "/".

#ifndef PALVOR_IO_DATA_PATHS_H_
#define PALVOR_IO_DATA_PATHS_H_

#include <string>

namespace palvor {

// A folder and a prefix, as texts that are used as they stand.
struct DataPlace {
  std::string folder;
  std::string prefix;
};

struct DataPaths {
  // Prefixes, without number and kind of file.
  std::string strings;  // input strings
  std::string arrays;   // suffix arrays and their LCP files
  std::string output;   // every output file

  std::string lengths;
  std::string bitLengths;
  std::string partitions;  // in the folder of the suffix arrays, but named
                           // after the inputs
  std::string outputFolder;
  std::string dividers;

  std::string stringFile(int input) const;
  std::string arrayFile(int stream) const;
  std::string lcpFile(int stream) const;
  std::string treeFile(int tree) const;
};

// Forms every path. Fails if one of them has 200 characters or more.
DataPaths composePaths(const DataPlace& input, const DataPlace& arrays,
                       const DataPlace& output);

// Fails if the longest of the numbered paths that a merge reads is too long.
void testNumberedPaths(const DataPaths& paths, int inputs, int streams,
                       bool withLcpFiles);

}  // namespace palvor

#endif  // PALVOR_IO_DATA_PATHS_H_
