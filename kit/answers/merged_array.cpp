#include "kit/answers/merged_array.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "kit/answers/order_tests.h"
#include "kit/file_error.h"
#include "kit/work_progress.h"

namespace kit {
namespace {

constexpr uint64_t kBatch = 4096;  // suffixes: what fits into a near cache

}  // namespace

void testRecordCount(const std::string& path, uint64_t records,
                     const MergedInputs& inputs) {
  if (records == inputs.total()) return;
  throw FileError(
      path, fmt::format("{} records, expected {}, one for each suffix of {} "
                        "inputs: {}",
                        records, inputs.total(), inputs.count(),
                        records < inputs.total()
                            ? "unfinished, or of fewer inputs (see -N)"
                            : "of other inputs"));
}

void testPrefixWords(const std::string& path, const Suffix& suffix,
                     uint64_t index, const MergedInputs& inputs,
                     MergedStrings& strings) {
  const uint32_t input = inputNumber(suffix);
  const uint64_t rest = 2 * uint64_t{inputs.length(input) - suffix.pos};
  const uint64_t prefix = prefixBits(suffix);
  uint64_t differ = prefix ^ strings.slice(input, 2 * uint64_t{suffix.pos});
  if (rest < 64) differ = differ >> (64 - rest);
  if (differ == 0) return;
  throw FileError(
      path, fmt::format("record {}: its prefix words are not those of input "
                        "{}: the array is of other inputs",
                        index, input));
}

MergedArray::MergedArray(const MergedInputs& inputs, const std::string& base)
    : inputs_(inputs),
      array_(seriesFiles(base, "stpsa", "-a -l"), sizeof(Suffix)),
      lcps_(seriesFiles(base, "stlcp", "-a -l"), sizeof(LcpEntry)) {
  testRecordCount(array_.name(), array_.records(), inputs);
  testRecordCount(lcps_.name(), lcps_.records(), inputs);
}

std::vector<Suffix> MergedArray::records(uint64_t first, uint64_t count) const {
  std::vector<Suffix> result(count);
  array_.read(first, count, result.data());
  for (const Suffix& suffix : result) {
    const uint32_t input = inputNumber(suffix);
    if (input < inputs_.count() && suffix.pos < inputs_.length(input)) continue;
    throw FileError(array_.name(), "was changed meanwhile");
  }
  return result;
}

void MergedArray::pass(const std::string& doing,
                       const TakeSuffixes& take) const {
  WorkProgress progress(doing, size());
  passPart(
      0, size(),
      [&](std::span<const Suffix> suffixes, std::span<const LcpEntry> entries) {
        take(suffixes, entries);
        progress.add(suffixes.size());
      });
}

void MergedArray::passPart(uint64_t first, uint64_t end,
                           const TakeSuffixes& take) const {
  const StoredSeries array = array_.reopened(), lcps = lcps_.reopened();
  // The record before is tested, and not handed on.
  const uint64_t before = first == 0 ? 0 : 1;
  OrderTests tests(inputs_.lengths(), array.name(), lcps.name(),
                   first - before);
  MergedStrings strings(inputs_);
  std::vector<Suffix> suffixes(kBatch);
  std::vector<LcpEntry> entries(kBatch);
  for (uint64_t done = first - before; done < end;) {
    const size_t count = std::min(kBatch, end - done);
    array.read(done, count, suffixes.data());
    lcps.read(done, count, entries.data());
    const std::span<const Suffix> batch(suffixes.data(), count);
    tests.take(batch, {entries.data(), count});
    testPrefixWords(array.name(), batch.back(), done + count - 1, inputs_,
                    strings);
    const size_t skipped = done < first ? 1 : 0;
    take(batch.subspan(skipped),
         std::span<const LcpEntry>(entries.data(), count).subspan(skipped));
    done += count;
  }
}

LcpEntry MergedArray::entry(uint64_t index) const {
  LcpEntry entry = 0;
  lcps_.read(index, 1, &entry);
  return entry;
}

}  // namespace kit
