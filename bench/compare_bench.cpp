// One comparison, by how much the two suffixes share.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "bench/random_inputs.h"
#include "palvor/text/compare.h"

namespace {

using palvor::Processor;

constexpr unsigned kWords = 1 << 18;

// Arguments: words between two differences of the inputs, 0 for independent
// inputs, whose suffixes part within the prefix words; the processor.
void compareSuffixes(benchmark::State& state) {
  const RandomInputs inputs(2, kWords, static_cast<int>(state.range(0)));
  palvor::SuffixCompare compare(inputs.text(), true,
                                static_cast<Processor>(state.range(1)));
  std::mt19937 random(2);
  std::vector<palvor::Suffix> suffixes;
  for (int i = 0; i < 1 << 12; i++) {
    const auto pos = static_cast<unsigned>(random() % (16 * kWords - 64));
    suffixes.push_back(inputs.suffixAt(0, pos));
    suffixes.push_back(inputs.suffixAt(1, pos));
  }
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(compare(suffixes[next], suffixes[next + 1], 0));
    next = (next + 2) % suffixes.size();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(compareSuffixes)
    ->ArgsProduct({{0, 8, 64, 1024, 65536},
                   {static_cast<int64_t>(Processor::kPortable),
                    static_cast<int64_t>(Processor::kAvx2),
                    static_cast<int64_t>(Processor::kBest)}});

}  // namespace
