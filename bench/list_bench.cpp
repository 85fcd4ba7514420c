// One step of the merge list: the first stream out, and in again with its next
// suffix.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "bench/random_inputs.h"
#include "palvor/order/front.h"
#include "palvor/order/lcp_list.h"

namespace {

using palvor::LcpEntry;
using palvor::Suffix;
using palvor::SuffixCompare;

constexpr size_t kSuffixes = 1 << 18;  // of all streams together

// One stream: some of the suffixes of an input, in order, each with its LCP
// entry with the one before.
struct Stream {
  std::vector<Suffix> suffixes;
  std::vector<LcpEntry> entries;
  size_t next = 0;
};

Stream makeStream(const RandomInputs& inputs, SuffixCompare& compare,
                  uint32_t input, int words, size_t count,
                  std::mt19937& random) {
  Stream stream;
  for (size_t n = 0; n < count; n++) {
    const auto limit = 16 * static_cast<unsigned>(words) - 64;
    stream.suffixes.push_back(
        inputs.suffixAt(input, static_cast<uint32_t>(random() % limit)));
  }
  auto& suffixes = stream.suffixes;
  std::sort(suffixes.begin(), suffixes.end(),
            [&](const Suffix& a, const Suffix& b) {
              return a.pos != b.pos && compare(b, a, 0).after();
            });
  stream.entries.assign(count, 0);
  for (size_t i = 1; i < count; i++) {
    stream.entries[i] =
        palvor::entryOf(compare(suffixes[i - 1], suffixes[i], 0));
  }
  return stream;
}

// Files that are not read, of so many streams of one input each.
palvor::StreamFiles filesOf(int count) {
  palvor::Lengths lengths;
  lengths.characters.resize(static_cast<size_t>(count));
  lengths.bits.resize(static_cast<size_t>(count));
  return {{}, lengths, false};
}

// The list of streams that are in memory instead of in files.
struct Listed {
  Listed(const RandomInputs& inputs, SuffixCompare& compare, int count)
      : streams(inputs.text(), filesOf(count), 1, {}, memory, time),
        streamCompare(compare, stretches, streams),
        front(streams, entries, streamCompare, cost),
        list(front) {}

  void show(int k, const Stream& stream) {
    streams[k].advanceTo(&stream.suffixes[stream.next]);
  }

  void prime(std::vector<Stream>& all) {
    list.clear();
    for (int k = 0; k < streams.count(); k++) {
      Stream& stream = all[static_cast<size_t>(k)];
      stream.next = 0;
      show(k, stream);
      list.prime(k);
    }
  }

  palvor::MemoryCount memory;
  palvor::IoTime time;
  palvor::SuffixStreams streams;
  palvor::LcpStreams entries;
  palvor::Stretches stretches;
  palvor::StreamCompare streamCompare;
  palvor::Cost cost;
  palvor::Front front;
  palvor::LcpList list;
};

// Arguments: streams in the list; words between two differences of their
// inputs, 0 for independent ones. All begin anew when one has come to its end.
void moveTheHead(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const int words = (1 << 22) / count;
  const RandomInputs inputs(count, words, static_cast<int>(state.range(1)));
  SuffixCompare compare(inputs.text(), true, palvor::Processor::kBest);
  std::mt19937 random(3);
  std::vector<Stream> streams;
  for (int k = 0; k < count; k++) {
    streams.push_back(makeStream(inputs, compare, static_cast<uint32_t>(k),
                                 words, kSuffixes / static_cast<size_t>(count),
                                 random));
  }
  Listed listed(inputs, compare, count);
  listed.prime(streams);
  for (auto _ : state) {
    const int k = listed.list.head();
    Stream& stream = streams[static_cast<size_t>(k)];
    if (++stream.next == stream.suffixes.size()) {
      state.PauseTiming();
      listed.prime(streams);
      state.ResumeTiming();
      continue;
    }
    listed.show(k, stream);
    listed.list.moveHead(stream.entries[stream.next]);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(moveTheHead)
    ->Args({2, 0})
    ->Args({16, 0})
    ->Args({256, 0})
    ->Args({4096, 0})
    ->Args({16, 64});

}  // namespace
