#include "palvor/range/cuts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "palvor/range/array_reader.h"

namespace palvor {
namespace {

constexpr int64_t kSamples = 32;  // of each array, for each range
constexpr int64_t kLeastSamples = 16;
// Of all arrays one record of so many, at most: merging these takes a hundred
// times longer than to read one.
constexpr int64_t kSpacing = 512;

// Its multiples, modulo 1, are spread evenly.
constexpr double kGoldenRatio = 0.6180339887498949;

struct Sample {
  uint64_t key;
  double weight;  // records that it stands for
};

// Each sample stands for as many records, and somewhere among them: elsewhere
// in each array, as arrays that are alike would otherwise all err to the same
// side.
void addSamples(const ArrayReader& array, int64_t wanted, double offset,
                std::vector<Sample>& samples) {
  const int64_t count = std::min(wanted, array.size());
  const double weight =
      static_cast<double>(array.size()) / static_cast<double>(count);
  for (int64_t i = 0; i < count; i++) {
    const auto record =
        static_cast<int64_t>((static_cast<double>(i) + offset) * weight);
    samples.push_back(
        {array.keyAt(std::min(record, array.size() - 1)), weight});
  }
}

// The samples of one key, which a cut goes before or behind.
struct KeyGroup {
  uint64_t key;
  double before;  // records before it
  double behind;  // and with it
};

std::vector<KeyGroup> groupsOf(std::vector<Sample> samples) {
  std::ranges::sort(samples, {}, &Sample::key);
  std::vector<KeyGroup> groups;
  double sum = 0;
  for (const Sample& sample : samples) {
    if (groups.empty() || groups.back().key != sample.key) {
      groups.push_back({sample.key, sum, sum});
    }
    groups.back().behind = sum += sample.weight;
  }
  return groups;
}

}  // namespace

std::vector<uint64_t> chooseCuts(const StreamFiles& files, int ranges) {
  int64_t records = 0;
  for (int k = 0; k < files.count(); k++) {
    records += std::max<int64_t>(fileSize(files.path(k)), 0) /
               static_cast<int64_t>(sizeof(Suffix));
  }
  const int64_t share = records / kSpacing / std::max(files.count(), 1);
  const int64_t wanted =
      std::max(std::min(kSamples * ranges, share), kLeastSamples);
  std::vector<Sample> samples;
  double offset = 0.5;
  for (int k = 0; k < files.count(); k++) {
    addSamples(ArrayReader(files, k), wanted, offset, samples);
    offset = std::fmod(offset + kGoldenRatio, 1.0);
  }
  const std::vector<KeyGroup> groups = groupsOf(std::move(samples));
  std::vector<uint64_t> cuts;
  if (groups.empty()) return cuts;
  const double size = groups.back().behind / ranges;
  auto group = groups.begin();
  for (int i = 1; i < ranges; i++) {
    const double target = i * size;
    while (group->behind < target && group + 1 != groups.end()) ++group;
    const bool isBehind = group->behind - target < target - group->before;
    if (isBehind && group->key == UINT64_MAX) break;
    const uint64_t cut = group->key + (isBehind ? 1 : 0);
    if (cut > (cuts.empty() ? 0 : cuts.back())) cuts.push_back(cut);
  }
  return cuts;
}

}  // namespace palvor
