#include "kit/check/check_arrays.h"

#include <fmt/format.h>

#include <optional>
#include <vector>

#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {
namespace {

constexpr uint64_t kBlock = 1 << 15;  // records read at once

}  // namespace

void checkArray(const ArrayToCheck& array, const CheckedStrings& strings,
                MetSuffixes& met, FaultLog& faults,
                const std::function<void(uint64_t)>& advance) {
  const std::string path = array.path + ".stpsa";
  const std::string lcpPath = array.path + ".stlcp";
  const RecordFile<Suffix> file(path);
  std::optional<RecordFile<LcpEntry>> lcpFile;
  if (isThere(lcpPath)) lcpFile.emplace(lcpPath);
  if (lcpFile && lcpFile->size() != file.size()) {
    faults.add(lcpPath,
               fmt::format("{} entries, expected {}, as many as records",
                           lcpFile->size(), file.size()));
  }
  const uint64_t suffixes = strings.total(array.firstInput, array.endInput);
  if (file.size() < suffixes) {
    faults.add(path, fmt::format("{} of {} records: unfinished", file.size(),
                                 suffixes));
  }

  SuffixRun run(strings, met, faults);
  for (uint64_t next = 0; next < file.size();) {
    const std::vector<Suffix> block = file.read(next, kBlock);
    std::vector<LcpEntry> entries;
    if (lcpFile) entries = lcpFile->read(next, kBlock);
    for (size_t i = 0; i < block.size(); i++, next++) {
      const Suffix& suffix = block[i];
      const uint64_t input = uint64_t{inputNumber(suffix)} + array.origin;
      if (input < array.firstInput || input >= array.endInput) {
        faults.add(path, next,
                   fmt::format("input {} is not one of this array's", input));
        continue;
      }
      const Place place = {static_cast<uint32_t>(input), suffix.pos};
      const std::optional<Step> step = run.take(place, path, next);
      if (!step) continue;
      const uint64_t prefix = strings.slice(place.input, 2 * place.pos);
      const uint64_t found = prefixBits(suffix);
      if (prefix != found) {
        faults.add(path, next,
                   fmt::format("prefix words {:08X} {:08X}, expected {:08X} "
                               "{:08X}",
                               found >> 32, found & 0xFFFFFFFF, prefix >> 32,
                               prefix & 0xFFFFFFFF));
      }
      if (i >= entries.size() || step->first) continue;
      if (entries[i] != step->entry()) {
        faults.add(
            lcpPath, next,
            fmt::format("entry {}, expected {}", entries[i], step->entry()));
      }
    }
    advance(block.size());
  }
  if (file.size() < suffixes) return;
  if (const auto missing = met.missing(array.firstInput, array.endInput)) {
    faults.add(path, fmt::format("{} is missing", describe(*missing)));
  }
}

}  // namespace kit
