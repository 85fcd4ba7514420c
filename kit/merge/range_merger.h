// Merges ranges of one collection, in several threads, with strings that are
// loaded once.

#ifndef PALVOR_KIT_MERGE_RANGE_MERGER_H_
#define PALVOR_KIT_MERGE_RANGE_MERGER_H_

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "palvor/merge.h"

namespace kit {

// What is merged, and with what.
struct MergePlaces {
  std::string inputdir;
  std::string prefix;
  std::string odir, opfx, sdir, spfx;  // as palvor's; empty: not given
  bool zeroOrigin = false;             // as palvor's -z
  bool readLcps = false;               // as palvor's -Z
};
struct MergeMeans {
  int jobs = 1;                                            // threads
  uint64_t memory = std::numeric_limits<uint64_t>::max();  // bytes
};

// Of a whole collection or a range, as far as memory depends on it.
struct MergeLoad {
  uint64_t stringBytes = 0;
  int streams = 0;
  uint64_t ranges = 1;
  uint64_t sinkBytes = 0;   // of each thread, beside its buffers of records
  uint64_t otherBytes = 0;  // of all together
};

// How a limit of memory is shared out among threads. All in bytes, but for
// records.
struct MemoryShares {
  uint64_t shared = 0;  // by all threads: strings, slices and the program
  uint64_t perWorker = 0;
  int streamRecords = 0;  // buffer of each stream
  int outputRecords = 0;

  uint64_t total(int jobs) const {
    return shared + static_cast<uint64_t>(jobs) * perWorker;
  }
};

// Bytes that a merge by so many threads does not do without.
uint64_t leastMergeMemory(const MergeLoad& load, bool readLcps, int jobs);

// Throws std::runtime_error, with what is needed, if the limit is too low.
MemoryShares shareMemory(const MergeLoad& load, bool readLcps,
                         const MergeMeans& means);

// Finding likes takes at most so many bytes for each of packed strings.
constexpr uint64_t kLikesRatio = 4;

class RangeMerger {
 public:
  // Reads the lengths files. Everything here throws std::exception.
  explicit RangeMerger(const MergePlaces& places);

  const palvor::StreamFiles& files() const { return files_; }
  // Of the output files, without the kind.
  const std::string& output() const { return files_.paths.output; }
  const std::string& outputFolder() const { return files_.paths.outputFolder; }
  // Characters of the longest input, and bytes of all packed strings.
  uint32_t longest() const { return longest_; }
  uint64_t stringBytes() const { return stringBytes_; }

  // Loads the strings, which the functions below need.
  void load();
  const palvor::Collection& strings() const { return *options_.strings; }

  // Finds out which strings are like others, which makes merging faster, unless
  // that takes more than so many bytes. The same is merged without it.
  void findLikes(uint64_t mostBytes);

  // Merges from suffix arrays that are elsewhere.
  void readArraysFrom(const palvor::DataPlace& place) {
    options_.arrays = place;
  }

  // Merges a range. Threads may do so side by side.
  void merge(std::shared_ptr<const palvor::MergeRange> range,
             const MemoryShares& shares, palvor::Sink& sink) const;

 private:
  palvor::MergeOptions options_;
  palvor::StreamFiles files_;
  uint32_t longest_ = 0;
  uint64_t stringBytes_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_RANGE_MERGER_H_
