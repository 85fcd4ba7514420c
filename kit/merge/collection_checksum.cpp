#include "kit/merge/collection_checksum.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "kit/file_error.h"
#include "kit/merge/engine_error.h"
#include "kit/ordered_checksum.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "palvor/range/array_reader.h"

namespace kit {
namespace {

constexpr int64_t kSampled = 16;  // records of an array

// Of the file at a path, or nothing.
std::string bytesIfThere(const std::string& path) {
  if (!isThere(path)) return "";
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

std::string checksumOfCollection(const RangeMerger& merger) {
  const palvor::StreamFiles& files = merger.files();
  std::string text = files.hasOrigins ? "zero-origin" : "";
  for (const std::string& path :
       {files.paths.lengths, files.paths.bitLengths, files.paths.partitions}) {
    const std::string bytes = bytesIfThere(path);
    text += checksumOf(bytes.data(), bytes.size());
  }
  std::vector<Suffix> sample(static_cast<size_t>(kSampled));
  for (int k = 0; k < files.count(); k++) {
    callEngine([&] {
      const palvor::ArrayReader array(files, k);
      const int64_t count = std::min(kSampled, array.size());
      for (int64_t i = 0; i < count; i++) {
        array.read(i * (array.size() / count), 1,
                   &sample[static_cast<size_t>(i)]);
      }
      text += fmt::format("{}:", array.size());
      text += checksumOf(sample.data(),
                         sizeof(Suffix) * static_cast<size_t>(count));
    });
  }
  return checksumOf(text.data(), text.size());
}

void testFresh(const RangePlan& plan, const RangeMerger& merger) {
  if (plan.collection == checksumOfCollection(merger)) return;
  throw FileError(planPath(merger.output()),
                  "planned for other suffix arrays than are there now; plan "
                  "again with --force");
}

}  // namespace kit
