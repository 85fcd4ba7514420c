// One comparison, by how much the two suffixes share.

#include <benchmark/benchmark.h>

#include "bench/random_inputs.h"
#include "sources/compare.h"

namespace {

constexpr unsigned kWords = 1 << 18;

// Argument: words between two differences of the inputs; 0 for independent
// inputs, whose suffixes part within the prefix words.
void compareSuffixes(benchmark::State& state) {
  useRandomInputs(2, kWords, static_cast<int>(state.range(0)));
  std::mt19937 random(2);
  std::vector<Suffix> suffixes;
  for (int i = 0; i < 1 << 12; i++) {
    const auto pos = static_cast<unsigned>(random() % (16 * kWords - 64));
    suffixes.push_back(suffixOf(0, pos));
    suffixes.push_back(suffixOf(1, pos));
  }
  size_t next = 0;
  for (auto _ : state) {
    int firstbit;
    benchmark::DoNotOptimize(
        ZEPCompare(&suffixes[next], &suffixes[next + 1], &firstbit, 0));
    next = (next + 2) % suffixes.size();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(compareSuffixes)->Arg(0)->Arg(8)->Arg(64)->Arg(1024)->Arg(65536);

}  // namespace
