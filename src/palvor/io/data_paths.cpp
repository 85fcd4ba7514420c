#include "palvor/io/data_paths.h"

#include "palvor/error.h"

namespace palvor {
namespace {

constexpr const char* kFolderSuffix = ".ST";
constexpr size_t kMostCharacters = 199;

// A shortened path would name another file, and a longer one is not taken.
std::string tested(std::string path) {
  if (path.size() > kMostCharacters) {
    fail("path of %zu characters is too long (at most %zu): %s", path.size(),
         kMostCharacters, path.c_str());
  }
  return path;
}

std::string folderOf(const DataPlace& place) {
  return place.folder + place.prefix + kFolderSuffix + "/";
}

std::string numbered(const std::string& prefix, int number, const char* kind) {
  return prefix + "_" + std::to_string(number) + kind;
}

}  // namespace

std::string DataPaths::stringFile(int input) const {
  return numbered(strings, input, ".stbin");
}

std::string DataPaths::arrayFile(int stream) const {
  return numbered(arrays, stream, ".stpsa");
}

std::string DataPaths::lcpFile(int stream) const {
  return numbered(arrays, stream, ".stlcp");
}

std::string DataPaths::treeFile(int tree) const {
  return numbered(output, tree, ".stree");
}

DataPaths composePaths(const DataPlace& input, const DataPlace& arrays,
                       const DataPlace& output) {
  DataPaths paths;
  paths.strings = tested(folderOf(input) + input.prefix);
  paths.lengths = tested(paths.strings + ".stlengths");
  paths.bitLengths = tested(paths.strings + ".stblengths");
  paths.partitions = tested(folderOf(arrays) + input.prefix + ".stplengths");
  paths.arrays = tested(folderOf(arrays) + arrays.prefix);
  paths.outputFolder = tested(folderOf(output));
  paths.output = tested(paths.outputFolder + output.prefix);
  paths.dividers = tested(paths.output + ".stdiv");
  return paths;
}

void testNumberedPaths(const DataPaths& paths, int inputs, int streams,
                       bool withLcpFiles) {
  if (inputs > 0) tested(paths.stringFile(inputs - 1));
  if (streams > 0) tested(paths.arrayFile(streams - 1));
  if (streams > 0 && withLcpFiles) tested(paths.lcpFile(streams - 1));
}

}  // namespace palvor
