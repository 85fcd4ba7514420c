#include "kit/merge/range_merger.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "kit/amounts.h"
#include "kit/merge/engine_error.h"
#include "palvor/format/packing.h"
#include "palvor/io/lengths_files.h"

namespace kit {
namespace {

constexpr uint64_t kMergerBytes = 12'000'000;  // of the program itself
constexpr uint64_t kSliceBytes = 60;  // of a stream in a range, while cutting

// Of a merge: its memory of long matches, and what it keeps of each stream.
constexpr uint64_t kMergeBytes = 3'000'000;
constexpr uint64_t kStreamBytes = 2'000;
constexpr uint64_t kLcpStreamBytes = 65'536;

constexpr uint64_t kRecordBytes = sizeof(palvor::Suffix);
constexpr uint64_t kOutputBytes =
    sizeof(palvor::Suffix) + sizeof(palvor::LcpEntry);

// More than the least makes reading faster, until blocks are long enough for
// any disk, and all of a worker's fill no more than this together.
constexpr uint64_t kLeastStreamRecords = 1024;
constexpr uint64_t kMostStreamRecords = 1 << 18;
constexpr uint64_t kUsualRecords = 1 << 22;  // of all streams
constexpr uint64_t kUsualStreamRecords = 1 << 12;
constexpr uint64_t kLeastOutput = 1 << 12;
constexpr uint64_t kMostOutput = 1 << 16;

palvor::DataPlace placeOf(const std::string& folder, const std::string& prefix,
                          const palvor::DataPlace& otherwise) {
  palvor::DataPlace place = {folder.empty() ? otherwise.folder : folder,
                             prefix.empty() ? otherwise.prefix : prefix};
  if (!place.folder.empty() && place.folder.back() != '/') place.folder += '/';
  return place;
}

palvor::MergeOptions optionsOf(const MergePlaces& places) {
  palvor::MergeOptions options;
  options.input = placeOf(places.inputdir, places.prefix, {});
  options.arrays = placeOf(places.sdir, places.spfx, options.input);
  options.output = placeOf(places.odir, places.opfx, options.input);
  options.zeroOrigin = places.zeroOrigin;
  options.readLcps = places.readLcps;
  return options;
}

uint64_t streamsOf(const MergeLoad& load) {
  return static_cast<uint64_t>(std::max(load.streams, 1));
}

uint64_t sharedBytes(const MergeLoad& load) {
  return kMergerBytes + load.stringBytes + load.otherBytes +
         kSliceBytes * streamsOf(load) * load.ranges;
}

// Of each thread, beside its buffers of records.
uint64_t fixedBytes(const MergeLoad& load, bool readLcps) {
  return kMergeBytes + load.sinkBytes +
         streamsOf(load) * (kStreamBytes + (readLcps ? kLcpStreamBytes : 0));
}

}  // namespace

uint64_t leastMergeMemory(const MergeLoad& load, bool readLcps, int jobs) {
  const uint64_t streams = streamsOf(load);
  return sharedBytes(load) +
         static_cast<uint64_t>(jobs) *
             (fixedBytes(load, readLcps) + kOutputBytes * kLeastOutput +
              kRecordBytes * kLeastStreamRecords * streams);
}

MemoryShares shareMemory(const MergeLoad& load, bool readLcps,
                         const MergeMeans& means) {
  const uint64_t streams = streamsOf(load);
  const auto jobs = static_cast<uint64_t>(means.jobs);
  MemoryShares shares;
  shares.shared = sharedBytes(load);
  const uint64_t fixed = fixedBytes(load, readLcps);
  const uint64_t least = leastMergeMemory(load, readLcps, means.jobs);
  if (least > means.memory) {
    throw std::runtime_error(fmt::format(
        "a merge in {} threads takes {} of memory at least, {} of it for the "
        "strings; fewer threads take less",
        jobs, roundBytes(least), roundBytes(load.stringBytes)));
  }
  const uint64_t usual = std::clamp(kUsualRecords / streams,
                                    kUsualStreamRecords, kMostStreamRecords);
  const uint64_t room = (means.memory - shares.shared) / jobs - fixed;
  const uint64_t output =
      std::clamp(room / 8 / kOutputBytes, kLeastOutput, kMostOutput);
  const uint64_t records = std::min(
      (room - kOutputBytes * output) / (kRecordBytes * streams), usual);
  shares.outputRecords = static_cast<int>(output);
  shares.streamRecords = static_cast<int>(records);
  shares.perWorker =
      fixed + kOutputBytes * output + kRecordBytes * records * streams;
  return shares;
}

RangeMerger::RangeMerger(const MergePlaces& places)
    : options_(optionsOf(places)),
      files_(callEngine([&] { return palvor::streamFilesOf(options_); })) {
  const palvor::Lengths lengths = callEngine(
      [&] { return palvor::readLengths(files_.paths, options_.mostInputs); });
  for (size_t i = 0; i < lengths.bits.size(); i++) {
    longest_ = std::max(longest_, lengths.characters[i]);
    stringBytes_ += sizeof(uint32_t) *
                    static_cast<uint64_t>(palvor::storedWords(lengths.bits[i]));
  }
}

void RangeMerger::load() {
  options_.strings = callEngine([&] { return palvor::loadStrings(options_); });
}

void RangeMerger::findLikes(uint64_t mostBytes) {
  const bool fits = kLikesRatio * stringBytes_ <= mostBytes;
  options_.stretches = fits ? callEngine([&] {
    return palvor::findStretches(options_, strings());
  })
                            : std::make_shared<const palvor::Stretches>();
}

void RangeMerger::merge(std::shared_ptr<const palvor::MergeRange> range,
                        const MemoryShares& shares, palvor::Sink& sink) const {
  palvor::MergeOptions options = options_;
  options.range = std::move(range);
  options.streamBuffer = static_cast<int>(kRecordBytes) * shares.streamRecords;
  palvor::MergeObserver observer;
  callEngine([&] { palvor::merge(options, sink, observer); });
}

}  // namespace kit
