#include "support/engine.h"

#include <gtest/gtest.h>

#include <span>
#include <sstream>

#include "palvor/sink/batch_sink.h"

palvor::MergeOptions optionsFor(const DataFolder& folder, int records) {
  palvor::MergeOptions options;
  options.input = options.arrays = options.output = {folder.root(), "x"};
  options.streamBuffer = 16 * records;
  return options;
}

palvor::StreamFiles streamFilesIn(const DataFolder& folder, int count,
                                  bool zeroOrigin) {
  const palvor::DataPlace place = {folder.root(), "x"};
  palvor::Lengths lengths;
  lengths.characters.resize(static_cast<size_t>(count));
  return {palvor::composePaths(place, place, place), lengths, zeroOrigin};
}

palvor::MergeOptions withEngine(palvor::MergeOptions options,
                                const Engine& engine) {
  options.processor = engine.processor;
  options.walkOnly = engine.walkOnly;
  options.heap = engine.heap;
  options.usePrefixKeys = engine.usePrefixKeys;
  return options;
}

Merged mergeToMemory(const palvor::MergeOptions& options, int batch) {
  Merged merged;
  palvor::BatchSink sink(
      [&merged](std::span<const palvor::Suffix> suffixes,
                std::span<const palvor::LcpEntry> entries) {
        for (const palvor::Suffix& suffix : suffixes) {
          merged.records.push_back(
              {suffix.input, suffix.pos, suffix.prefix0, suffix.prefix1});
        }
        merged.entries.insert(merged.entries.end(), entries.begin(),
                              entries.end());
      },
      batch);
  palvor::MergeObserver observer;
  merged.report = palvor::merge(options, sink, observer);
  if (!merged.entries.empty()) merged.entries[0] = 0;
  return merged;
}

std::string countsOf(const palvor::Cost& cost) {
  std::ostringstream text;
  text << "comparisons " << cost.comparisons << ", positions " << cost.positions
       << ", settled " << cost.settled << ", words " << cost.words
       << ", found64 " << cost.found64 << ", found64More " << cost.found64More
       << ", unchanged " << cost.unchanged;
  return text.str();
}

palvor::Error errorOf(const std::function<void()>& failing) {
  try {
    failing();
  } catch (const palvor::Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing failed";
  return palvor::Error("");
}
