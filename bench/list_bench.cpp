// One step of the ordering of the streams: the first stream out, and in again
// with its next suffix.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/random_inputs.h"
#include "merge/front.h"
#include "merge/ordering.h"
#include "sources/compare.h"

namespace {

constexpr size_t kSuffixes = 1 << 18;  // of all streams together

// One stream: some of the suffixes of an input, in order, each with its LCP
// entry with the one before.
struct Stream {
  std::vector<Suffix> suffixes;
  std::vector<LcpEntry> entries;
  size_t next = 0;
};

bool sortsBefore(const Suffix& a, const Suffix& b) {
  return ZEPCompare(&a, &b, nullptr, 0) == 0 && a.pos != b.pos;
}

Stream makeStream(unsigned input, int words, size_t count,
                  std::mt19937& random) {
  Stream stream;
  for (size_t n = 0; n < count; n++) {
    const auto limit = 16 * static_cast<unsigned>(words) - 64;
    stream.suffixes.push_back(
        suffixOf(input, static_cast<unsigned>(random() % limit)));
  }
  auto& suffixes = stream.suffixes;
  std::sort(suffixes.begin(), suffixes.end(), sortsBefore);
  stream.entries.assign(count, 0);
  for (size_t i = 1; i < count; i++) {
    int firstbit = 0;
    ZEPCompare(&suffixes[i - 1], &suffixes[i], &firstbit, 0);
    stream.entries[i] = comparedEntry(firstbit);
  }
  return stream;
}

void primeAll(std::vector<Stream>& streams) {
  for (size_t k = 0; k < streams.size(); k++) {
    streams[k].next = 0;
    Suffixes[k] = &streams[k].suffixes[0];
    primeStream(static_cast<int>(k));
  }
}

// Arguments: streams in the list; words between two differences of their
// inputs, 0 for independent ones.
void moveTheHead(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const int words = (1 << 22) / count;
  useRandomInputs(count, words, static_cast<int>(state.range(1)));
  std::mt19937 random(3);
  std::vector<Stream> streams;
  for (int k = 0; k < count; k++) {
    streams.push_back(makeStream(static_cast<unsigned>(k), words,
                                 kSuffixes / static_cast<size_t>(count),
                                 random));
  }
  std::vector<Suffix*> front(streams.size());
  Suffixes = front.data();
  allocateOrdering(count);
  for (auto _ : state) {
    if (headStream() < 0) {
      state.PauseTiming();
      primeAll(streams);
      state.ResumeTiming();
    }
    const int k = headStream();
    Stream& stream = streams[static_cast<size_t>(k)];
    if (++stream.next == stream.suffixes.size()) {
      dropHead();
    } else {
      Suffixes[k] = &stream.suffixes[stream.next];
      moveHead(k, stream.entries[stream.next]);
    }
  }
  while (headStream() >= 0) dropHead();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(moveTheHead)
    ->Args({2, 0})
    ->Args({16, 0})
    ->Args({256, 0})
    ->Args({4096, 0})
    ->Args({16, 64});

}  // namespace
