// One step of the merge list: the first stream out, and in again with a suffix
// at a random place of the list.

#include <benchmark/benchmark.h>

#include "bench/random_inputs.h"
#include "merge/front.h"
#include "merge/list.h"
#include "merge/ordering.h"

namespace {

constexpr unsigned kWords = 1 << 14;

// Argument: streams in the list.
void insertIntoList(benchmark::State& state) {
  const int streams = static_cast<int>(state.range(0));
  useRandomInputs(streams, kWords, 0);
  std::mt19937 random(3);
  std::vector<Suffix> current(static_cast<size_t>(streams));
  std::vector<Suffix*> front;
  for (Suffix& suffix : current) front.push_back(&suffix);
  Suffixes = front.data();
  allocateList(streams);
  currlcp = currfbt = 0;
  const auto renew = [&](int k) {
    const auto pos = static_cast<unsigned>(random() % (16 * kWords - 64));
    current[static_cast<size_t>(k)] = suffixOf(static_cast<unsigned>(k), pos);
  };
  for (int k = 0; k < streams; k++) {
    renew(k);
    addList(k);
  }
  for (auto _ : state) {
    // Not the order of a merge, but the same work: nothing is known of the new
    // suffix, so every stored length is looked at.
    const int k = Lfst;
    addList(-1);
    if (Lfst >= 0) LLCP[Lfst] = 0;
    renew(k);
    addList(k);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(insertIntoList)->Arg(2)->Arg(16)->Arg(256);

}  // namespace
