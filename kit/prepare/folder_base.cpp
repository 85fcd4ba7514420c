#include "kit/prepare/folder_base.h"

#include <filesystem>
#include <system_error>

#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/record_file.h"

namespace kit {
namespace {

std::vector<uint32_t> wordsIn(const std::string& path) {
  return RecordFile<uint32_t>(path).read(0, UINT64_MAX);
}

void takeOverFile(const std::string& from, const std::string& to) {
  removeFile(to);
  std::error_code failure;
  std::filesystem::create_hard_link(from, to, failure);
  if (!failure) return;
  std::filesystem::copy_file(from, to, failure);
  if (failure) throw FileError(to, failure.message());
}

}  // namespace

FolderBase readBase(const DataFolder& folder) {
  FolderBase base;
  base.lengths = wordsIn(folder.path(".stlengths"));
  const std::string partitions = folder.path(".stplengths");
  base.inputsPerPsa = isThere(partitions)
                          ? wordsIn(partitions)
                          : std::vector<uint32_t>(base.lengths.size(), 1);
  const std::vector<char> table =
      RecordFile<char>(folder.path(".inputs.tsv")).read(0, UINT64_MAX);
  base.table.assign(table.begin(), table.end());
  base.arrays = Manifest::listedIn(folder.path(".manifest.tsv"));
  return base;
}

void takeOver(const DataFolder& from, const FolderBase& base,
              const DataFolder& to) {
  for (size_t i = 0; i < base.lengths.size(); i++) {
    takeOverFile(from.path(i, ".stbin"), to.path(i, ".stbin"));
  }
  for (const ManifestEntry& array : base.arrays) {
    takeOverFile(from.path() + "/" + array.name, to.path() + "/" + array.name);
  }
}

}  // namespace kit
