#include "kit/prepare/size_estimate.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <numeric>
#include <system_error>

#include "kit/sequences/sequence_reader.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

constexpr size_t kSamples = 4;                        // files
constexpr uint64_t kSampleBytes = uint64_t{1} << 18;  // of each

constexpr uint64_t kWorthLooking = 1'000'000;  // bytes of all files

struct Sample {
  uint64_t characters = 0;
  uint64_t stored = 0;  // bytes that they came of
};

Sample sampleOf(const std::string& file) {
  Sample sample;
  try {
    SequenceReader reader(file);
    while (reader.storedBytes() <= kSampleBytes && reader.nextRecord()) {
      size_t length = 0;
      do {
        length = reader.readSequence().size();
        sample.characters += length;
      } while (length > 0 && reader.storedBytes() <= kSampleBytes);
    }
    sample.stored = std::min(reader.storedBytes(), kSampleBytes);
  } catch (const std::exception&) {
    return {};
  }
  return sample;
}

}  // namespace

std::optional<SizeEstimate> estimateSize(
    const std::vector<std::string>& files) {
  std::vector<uint64_t> sizes;
  for (const std::string& file : files) {
    std::error_code failure;
    if (file == "-" || !fs::is_regular_file(file, failure)) return std::nullopt;
    sizes.push_back(fs::file_size(file, failure));
    if (failure) return std::nullopt;
  }
  const uint64_t stored =
      std::accumulate(sizes.begin(), sizes.end(), uint64_t{0});
  if (stored < kWorthLooking) return std::nullopt;
  Sample sum;
  for (size_t i = 0; i < std::min(kSamples, files.size()); i++) {
    const Sample sample = sampleOf(files[i]);
    sum.characters += sample.characters;
    sum.stored += sample.stored;
  }
  if (sum.stored == 0) return std::nullopt;
  const double ratio =
      static_cast<double>(sum.characters) / static_cast<double>(sum.stored);
  SizeEstimate estimate;
  for (const uint64_t size : sizes) {
    const auto characters =
        static_cast<uint64_t>(ratio * static_cast<double>(size));
    estimate.all += characters;
    estimate.longest = std::max(estimate.longest, characters);
  }
  return estimate;
}

}  // namespace kit
