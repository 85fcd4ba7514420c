#include "kit/merge/staged_slices.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "kit/folders.h"
#include "kit/output_file.h"
#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

template <typename Record>
void copySlice(const std::string& from, const palvor::Slice& slice,
               const std::string& to) {
  constexpr uint64_t kBlock = 1 << 18;  // records
  const RecordFile<Record> source(from);
  OutputFile copy(to);
  const auto end = static_cast<uint64_t>(slice.first + slice.count);
  for (auto at = static_cast<uint64_t>(slice.first); at < end; at += kBlock) {
    const std::vector<Record> block =
        source.read(at, std::min(kBlock, end - at));
    copy.write(block.data(), sizeof(Record) * block.size());
  }
  copy.commit();
}

}  // namespace

StagedSlices::StagedSlices(const std::string& folder, const std::string& name,
                           const RangeMerger& merger, palvor::MergeRange& range,
                           bool lcps)
    : place_{folder.back() == '/' ? folder : folder + '/', name},
      path_(fmt::format("{}{}.ST", place_.folder, name)) {
  createFolders(path_);
  const palvor::DataPaths& paths = merger.files().paths;
  for (int k = 0; k < merger.files().count(); k++) {
    palvor::Slice& slice = range.slices[static_cast<size_t>(k)];
    const std::string copy = fmt::format("{}/{}_{}", path_, name, k);
    copySlice<Suffix>(paths.arrayFile(k), slice, copy + ".stpsa");
    if (lcps && slice.count > 0) {
      copySlice<LcpEntry>(paths.lcpFile(k), slice, copy + ".stlcp");
    } else if (lcps) {
      OutputFile(copy + ".stlcp").commit();
    }
    slice.first = 0;
  }
  if (isThere(paths.partitions)) {
    fs::copy_file(paths.partitions,
                  path_ + "/" + fs::path(paths.partitions).filename().string(),
                  fs::copy_options::overwrite_existing);
  }
}

StagedSlices::~StagedSlices() {
  std::error_code failure;
  fs::remove_all(path_, failure);
}

}  // namespace kit
