#include "kit/answers/merged_array.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "kit/answers/order_tests.h"
#include "kit/file_error.h"
#include "kit/progress.h"

namespace kit {
namespace {

constexpr uint64_t kBatch = 4096;  // suffixes: what fits into a near cache

const std::string& mustBeThere(const std::string& path, const char* option) {
  if (isThere(path)) return path;
  throw FileError(path, fmt::format("not there; palvor {} writes it", option));
}

// "1:07", minutes and seconds.
std::string clockTime(double seconds) {
  const auto whole = static_cast<uint64_t>(seconds);
  return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

}  // namespace

MergedArray::MergedArray(const MergedInputs& inputs, const std::string& base)
    : inputs_(inputs),
      array_(mustBeThere(base + ".stpsa", "-a -l"), sizeof(Suffix)),
      lcps_(mustBeThere(base + ".stlcp", "-a -l"), sizeof(LcpEntry)) {
  for (const StoredBytes* file : {&array_, &lcps_}) {
    if (file->records() == inputs.total()) continue;
    throw FileError(
        file->path(),
        fmt::format("{} records, expected {}, one for each suffix of {} "
                    "inputs: {}",
                    file->records(), inputs.total(), inputs.count(),
                    file->records() < inputs.total() ? "unfinished, or of "
                                                       "fewer inputs (see -N)"
                                                     : "of other inputs"));
  }
}

void MergedArray::pass(const std::string& doing,
                       const TakeSuffixes& take) const {
  using Clock = std::chrono::steady_clock;
  OrderTests tests(inputs_.lengths(), array_.path(), lcps_.path());
  MergedStrings strings(inputs_);
  std::vector<Suffix> suffixes(kBatch);
  std::vector<LcpEntry> entries(kBatch);
  Progress progress;
  const auto begin = Clock::now();
  for (uint64_t done = 0; done < size();) {
    const size_t count = std::min(kBatch, size() - done);
    array_.read(done, count, suffixes.data());
    lcps_.read(done, count, entries.data());
    const std::span<const Suffix> batch(suffixes.data(), count);
    tests.take(batch, {entries.data(), count});
    testString(batch.back(), done + count - 1, strings);
    take(batch, {entries.data(), count});
    done += count;
    const double part = static_cast<double>(done) / static_cast<double>(size());
    const std::chrono::duration<double> spent = Clock::now() - begin;
    progress.show(fmt::format("palvor-kit: {}, {:.0f}%, {} left", doing,
                              100 * part,
                              clockTime(spent.count() / part * (1 - part))));
  }
}

void MergedArray::testString(const Suffix& suffix, uint64_t index,
                             MergedStrings& strings) const {
  const uint32_t input = inputNumber(suffix);
  const uint64_t rest = 2 * uint64_t{inputs_.length(input) - suffix.pos};
  const uint64_t prefix = uint64_t{suffix.prefix0} << 32 | suffix.prefix1;
  uint64_t differ = prefix ^ strings.slice(input, 2 * uint64_t{suffix.pos});
  if (rest < 64) differ = differ >> (64 - rest);
  if (differ == 0) return;
  throw FileError(array_.path(),
                  fmt::format("record {}: its prefix words are not those of "
                              "input {}: the array is of other inputs",
                              index, input));
}

}  // namespace kit
