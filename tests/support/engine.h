// Merges in this process, by each of the ways in which the engine can go.

#ifndef PALVOR_TESTS_SUPPORT_ENGINE_H_
#define PALVOR_TESTS_SUPPORT_ENGINE_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "palvor/merge.h"
#include "support/data_folder.h"

// All give the same results, and those that look at prefix words and keep LCP
// entries the same counts.
struct Engine {
  const char* name;
  palvor::Processor processor = palvor::Processor::kBest;
  bool walkOnly = false;
  bool heap = false;
  bool usePrefixKeys = true;
};

// The merge list, and what stands in for it where that is faster.
inline constexpr Engine kWalk = {"walk", palvor::Processor::kBest, true};
inline constexpr Engine kStandIns[] = {
    {"portable", palvor::Processor::kPortable},
    {"avx2", palvor::Processor::kAvx2},
    {"best", palvor::Processor::kBest},
};

inline constexpr palvor::Processor kProcessors[] = {
    palvor::Processor::kPortable, palvor::Processor::kAvx2,
    palvor::Processor::kBest};

// Options that read a folder and write to it, with buffers of so many records
// for each stream.
palvor::MergeOptions optionsFor(const DataFolder& folder, int records = 512);
// So many arrays of a folder, whatever its lengths files say.
palvor::StreamFiles streamFilesIn(const DataFolder& folder, int count,
                                  bool zeroOrigin = false);
palvor::MergeOptions withEngine(palvor::MergeOptions options,
                                const Engine& engine);

// What a merge hands out.
struct Merged {
  std::vector<Record> records;
  std::vector<uint32_t> entries;  // the first is 0
  palvor::MergeReport report;
};
// Batches are of at most `batch` records.
Merged mergeToMemory(const palvor::MergeOptions& options, int batch = 4096);

// All counts of a cost, with their names.
std::string countsOf(const palvor::Cost& cost);

// The error that something ends in; fails the test, and is empty, if there is
// none.
palvor::Error errorOf(const std::function<void()>& failing);

#endif  // PALVOR_TESTS_SUPPORT_ENGINE_H_
