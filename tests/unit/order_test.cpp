// The merge list and the merge heap, step by step, as tables: what was done,
// and what stands then.

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "palvor/order/lcp_list.h"
#include "palvor/order/merge_heap.h"
#include "support/engine.h"
#include "support/inputs.h"

namespace {

using Damage = std::function<void(const DataFolder&)>;

// The front of the streams of some texts, each with its first suffix taken.
struct Fronted {
  explicit Fronted(
      const std::vector<std::string>& texts,
      const Damage& damage = [](const DataFolder&) {})
      : folder({texts}),
        inputs(texts),
        streams(inputs.text(),
                streamFilesIn(folder, static_cast<int>(texts.size())), 8, {},
                memory, time),
        suffixCompare(inputs.text(), true, palvor::Processor::kBest),
        compare(suffixCompare, stretches, streams),
        front(streams, entries, compare, cost) {
    damage(folder);
    for (palvor::SuffixStream& stream : streams.streams) stream.advance();
  }

  DataFolder folder;
  InMemory inputs;
  palvor::MemoryCount memory;
  palvor::IoTime time;
  palvor::SuffixStreams streams;
  palvor::LcpStreams entries;
  palvor::SuffixCompare suffixCompare;
  palvor::Stretches stretches;
  palvor::StreamCompare compare;
  palvor::Cost cost;
  palvor::Front front;
};

// Streams in order, each with its entry: "1:6/0" is stream 1, which shares 6
// bits with the one before, and firstbit 0.
std::string stateOf(const palvor::LcpList& list) {
  std::ostringstream state;
  for (int k = list.isEmpty() ? -1 : list.head(); k >= 0;
       k = list.linkOf(k).next) {
    const palvor::LcpEntry entry = list.linkOf(k).entry;
    state << (k == list.head() ? "" : " ") << k << ":" << palvor::lcpBits(entry)
          << "/" << palvor::lcpFirstbit(entry);
  }
  return state.str();
}

struct Step {
  int primed;  // stream that is put in; -1: the head moves on
  const char* state;
  int positions;    // examined until then
  int comparisons;  // made until then
};

constexpr int kAdvance = -1;

void expectSteps(const std::vector<std::string>& texts,
                 const std::vector<Step>& steps) {
  Fronted fronted(texts);
  palvor::LcpList list(fronted.front);
  for (size_t i = 0; i < steps.size(); i++) {
    SCOPED_TRACE("step " + std::to_string(i));
    const Step& step = steps[i];
    step.primed == kAdvance ? list.advanceHead() : list.prime(step.primed);
    ASSERT_EQ(stateOf(list), step.state);
    ASSERT_EQ(fronted.cost.positions, step.positions);
    ASSERT_EQ(fronted.cost.comparisons, step.comparisons);
  }
}

TEST(LcpList, PassesComparesAndStopsByTheStoredLengths) {
  expectSteps({"AC", "AG", "CA"},
              {
                  {0, "0:0/0", 0, 0},
                  {1, "0:0/0 1:2/1", 1, 1},
                  {2, "2:0/0 0:2/0 1:2/1", 2, 2},
                  // CA shares less with A than AC and AG do: it passes both.
                  {kAdvance, "0:2/0 1:2/1 2:1/1", 4, 2},
                  // C shares as much with AC as CA with AG: compared.
                  {kAdvance, "1:2/1 0:1/1 2:2/0", 6, 3},
                  {kAdvance, "0:1/1 2:2/0 1:0/1", 8, 3},
                  {kAdvance, "2:2/0 1:0/1", 8, 3},
                  {kAdvance, "1:0/1", 8, 3},
                  {kAdvance, "", 8, 3},
              });
}

TEST(LcpList, StopsBeforeASuffixThatSharesLess) {
  expectSteps({"AAA", "C"}, {
                                {0, "0:0/0", 0, 0},
                                {1, "0:0/0 1:1/1", 1, 1},
                                {kAdvance, "0:2/0 1:1/1", 2, 1},
                                {kAdvance, "0:4/0 1:1/1", 3, 1},
                                {kAdvance, "1:1/1", 3, 1},
                            });
}

TEST(LcpList, LetsEqualSuffixesLeaveAsTheyCame) {
  expectSteps({"T", "T", "T"}, {
                                   {2, "2:0/0", 0, 0},
                                   {0, "2:0/0 0:2/0", 1, 1},
                                   {1, "2:0/0 0:2/0 1:2/0", 3, 3},
                                   {kAdvance, "0:2/0 1:2/0", 3, 3},
                               });
}

// The list of the header's figure, whatever the streams hold: with the lengths
// alone, only the place is found.
TEST(LcpList, FindsPlacesByLengthsAlone) {
  struct Row {
    int known;
    const char* state;
  };
  for (const Row& row :
       {Row{9, "3:9/1 0:8/1 1:10/1 2:4/1"}, Row{6, "0:8/1 1:10/1 3:6/1 2:4/1"},
        Row{3, "0:8/1 1:10/1 2:4/1 3:3/1"},
        Row{11, "3:11/1 0:8/1 1:10/1 2:4/1"}}) {
    Fronted fronted({"A", "C", "G", "T"});
    palvor::LcpList list(fronted.front);
    const auto put = [&](int k, int bits) {
      list.putFirst(k, palvor::makeLcpEntry(bits, 1), 0);
    };
    put(2, 4);
    put(1, 10);
    put(0, 8);
    put(3, 0);
    list.moveHead(palvor::makeLcpEntry(row.known, 1));
    EXPECT_EQ(stateOf(list), row.state);
    EXPECT_EQ(fronted.cost.comparisons, 0);
  }
}

TEST(MergeHeap, HasTheSmallestStreamAtItsHead) {
  struct Row {
    std::vector<std::string> texts;
    std::vector<int> primed;
    std::vector<int> heads;
  };
  for (const Row& row : {
           Row{{"AC", "AG", "CA"}, {0, 1, 2}, {2, 0, 1, 0, 2, 1}},
           Row{{"T", "T", "T", "T"}, {3, 1, 2, 0}, {0, 1, 2, 3}},
           Row{{"G", "A", "T", "C", "AA"}, {2, 0, 4, 3, 1}, {1, 4, 4, 3, 0, 2}},
           Row{{"C"}, {0}, {0}},
       }) {
    SCOPED_TRACE(testing::PrintToString(row.texts));
    Fronted fronted(row.texts);
    palvor::MergeHeap heap(fronted.front);
    for (const int k : row.primed) heap.prime(k);
    std::vector<int> heads;
    while (!heap.isEmpty()) {
      heads.push_back(heap.head());
      heap.advanceHead();
    }
    EXPECT_EQ(heads, row.heads);
    EXPECT_EQ(fronted.cost.positions, 0);
  }
}

TEST(Front, NoticesWhatBreaksTheOrder) {
  // The second record is ACA's: its prefix words are changed.
  for (const auto& [word, ascends] : {std::pair(0x10000000U, true),
                                      {0xFC000000U, false},     // TTT
                                      {0x10000001U, false}}) {  // goes on
    Fronted fronted({"GATTACA"}, [word = word](const DataFolder& folder) {
      std::string bytes = folder.bytes("x_0.stpsa");
      folder.write("x_0.stpsa", bytes.replace(24, 4, bytesOf({word})));
    });
    palvor::SuffixStream& stream = fronted.streams[0];
    while (stream.advance()) fronted.front.ownEntry(0);
    EXPECT_EQ(fronted.front.ascends, ascends) << word;
  }
}

}  // namespace
