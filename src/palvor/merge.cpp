#include "palvor/merge.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include "palvor/io/lengths_files.h"
#include "palvor/io/record_writer.h"
#include "palvor/order/block_order.h"
#include "palvor/order/front.h"
#include "palvor/order/key_rows.h"
#include "palvor/order/lcp_list.h"
#include "palvor/order/merge_heap.h"
#include "palvor/stream/lcp_stream.h"
#include "palvor/stream/suffix_stream.h"
#include "palvor/text/compare.h"
#include "palvor/text/stretch_builder.h"

namespace palvor {
namespace {

constexpr int kRecordSize = sizeof(Suffix);

// Buffers are read and written with byte counts that are signed 32-bit.
constexpr int kMostRecords = 134217727;  // of 16 bytes
constexpr int kMostNodes = 178956970;    // of 12 bytes

constexpr int kDefaultOutput = 1048576;  // records or nodes, at most

// A list of so few is sooner walked than searched.
constexpr int kShortList = 16;

// A tree needs its root and one leaf.
int leastOutput(const MergeOptions& options) { return options.array ? 1 : 2; }

void testNotNegative(char letter, int value) {
  if (value < 0) fail("option -%c: %d cannot be a size", letter, value);
}

void testSizes(const MergeOptions& options) {
  testNotNegative('M', options.streamBuffer);
  if (options.streamBuffer == 0) testNotNegative('m', options.memory);
  testNotNegative('N', options.mostInputs);
  testNotNegative('n', options.outputBuffer);
  const int least = leastOutput(options);
  const int most = options.array ? kMostRecords : kMostNodes;
  const int size = options.outputBuffer;
  if (size != 0 && (size < least || size > most)) {
    fail("option -n: %d is not from %d to %d", size, least, most);
  }
}

// Partitions beyond the number of inputs count as empty. If they are not, the
// records of arrays behind them that number their inputs from zero would get
// other inputs' numbers.
void testOrigins(const Lengths& lengths, const DataPaths& paths) {
  if (!lengths.leftPartitionOut) return;
  const int inputs = lengths.inputs();
  long long covered = 0;
  for (int j = 0; j < inputs; j++) {
    covered += lengths.partitions[static_cast<size_t>(j)];
  }
  if (covered >= inputs) return;
  fail(
      "partitions file %s: with option -z, its first %d entries must cover the "
      "%d inputs, they cover %lld",
      paths.partitions.c_str(), inputs, inputs, covered);
}

InputSummary summaryOf(const Lengths& lengths) {
  InputSummary summary = {0.0, 0, lengths.inputs(), lengths.streams()};
  for (const uint32_t characters : lengths.characters) {
    const int length = static_cast<int>(characters);
    summary.total += length;
    summary.longest = std::max(summary.longest, length);
  }
  return summary;
}

BufferSummary sizeBuffers(const MergeOptions& options,
                          const InputSummary& inputs) {
  BufferSummary buffers = {};
  const int64_t streams = inputs.streams;
  if (options.streamBuffer != 0) {
    buffers.records = options.streamBuffer / kRecordSize;
  } else if (streams != 0) {
    buffers.records =
        static_cast<int>(options.memory / (kRecordSize * streams));
  }
  buffers.records = std::min(buffers.records, kMostRecords);
  buffers.output =
      options.outputBuffer != 0
          ? options.outputBuffer
          : std::clamp(inputs.longest, leastOutput(options), kDefaultOutput);
  return buffers;
}

DataPaths pathsOf(const MergeOptions& options) {
  return composePaths(options.input, options.arrays, options.output);
}

bool usesStretches(const MergeOptions& options) {
  return options.usePrefixKeys && !options.walkOnly;
}

// What is not there for want of memory makes a merge slower, and not wrong.
Stretches stretchesOf(const Collection& strings) {
  try {
    return buildStretches(std::span(strings.data(), strings.inputs()));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

// Takes the smallest suffixes one by one, and the next of their streams, as
// long as there are streams in this ordering.
template <typename Order>
void mergeOneByOne(Order& order, Front& front, Sink& sink, MergeState& state) {
  while (!order.isEmpty()) {
    const int k = order.head();
    const SinkRoom room = sink.room();
    room.suffixes[0] = front.suffixOf(k);
    if (room.entries != nullptr) room.entries[0] = order.headEntry();
    sink.put(1);
    order.advanceHead();
    if (!front.streams[k].hasEnded()) state.taken++;
  }
}

// The same for the heap, whose suffixes come without entries: one is computed
// only where it is needed.
void mergeByHeap(MergeHeap& heap, Front& front, Sink& sink, MergeState& state) {
  Suffix last = {};
  int lastStream = 0;
  while (!heap.isEmpty()) {
    const int k = heap.head();
    const bool needsEntry = sink.needsEntry();
    const SinkRoom room = sink.room();
    const Suffix current = front.suffixOf(k);
    room.suffixes[0] = current;
    if (room.entries != nullptr) {
      room.entries[0] =
          needsEntry ? front.emittedEntry(lastStream, last, k, current) : 0;
    }
    sink.put(1);
    heap.advanceHead();
    if (!front.streams[k].hasEnded()) state.taken++;
    last = current;
    lastStream = k;
  }
}

// The hot path: batches by rows, and between them one suffix alone, until
// nothing is left or the order has broken.
void mergeByRows(KeyRows& rows, Front& front, Sink& sink, MergeState& state) {
  while (!rows.isEmpty() && front.ascends) {
    SinkRoom room = sink.room();
    const int count = rows.merge(room.suffixes, room.entries, room.count);
    if (count > 0) {
      sink.put(count);
      state.taken += count;
    }
    if (count == room.count || !front.ascends) continue;
    const int k = rows.head();
    room = sink.room();
    room.suffixes[0] = front.suffixOf(k);
    if (room.entries != nullptr) room.entries[0] = rows.headEntry();
    sink.put(1);
    rows.advanceHead();
    if (!front.streams[k].hasEnded()) state.taken++;
  }
}

// A merge from its options to its report.
class Run {
 public:
  Run(const MergeOptions& options, MergeObserver& observer)
      : options_(options), observer_(observer) {
    testSizes(options);
    paths_ = pathsOf(options);
  }

  MergeReport intoFiles();
  MergeReport into(Sink& sink) {
    readInputs();
    return mergeInto([&]() -> Sink& { return sink; });
  }

 private:
  void readInputs();
  MergeReport mergeInto(const std::function<Sink&()>& makeSink);
  std::span<const Slice> slices() const;
  void prime(Front& front, LcpList& list, std::optional<BlockOrder>& blocks,
             std::optional<MergeHeap>& heap);

  const MergeOptions& options_;
  MergeObserver& observer_;
  DataPaths paths_;
  MemoryCount memory_;
  IoTime time_;
  Lengths lengths_;
  BufferSummary buffers_ = {};
  std::shared_ptr<const Collection> text_;
  MergeState state_;
  const TreeSink* trees_ = nullptr;  // if the sink is one
};

void Run::readInputs() {
  lengths_ = readLengths(paths_, options_.mostInputs);
  if (options_.zeroOrigin) testOrigins(lengths_, paths_);
  memory_.add(int64_t{8} * lengths_.inputs());
  memory_.add(int64_t{4} * static_cast<int64_t>(lengths_.partitions.size()));
  const InputSummary inputs = summaryOf(lengths_);
  testNumberedPaths(paths_, inputs.inputs, inputs.streams, options_.readLcps);
  observer_.inputsKnown(inputs);
  buffers_ = sizeBuffers(options_, inputs);
  if (buffers_.records == 0 && inputs.streams != 0) {
    observer_.buffersTooSmall();
  }
  text_ = options_.strings != nullptr
              ? options_.strings
              : std::make_shared<const Collection>(
                    paths_, lengths_.bits, options_.mapStrings, memory_, time_);
}

// None if the streams are read whole.
std::span<const Slice> Run::slices() const {
  if (options_.range == nullptr) return {};
  testFits(*options_.range, lengths_.streams());
  return options_.range->slices;
}

// Takes the first suffix of every stream, and puts it into the ordering.
void Run::prime(Front& front, LcpList& list, std::optional<BlockOrder>& blocks,
                std::optional<MergeHeap>& heap) {
  for (int i = 0; i < front.streams.count(); i++) {
    const int k = options_.range != nullptr
                      ? options_.range->order[static_cast<size_t>(i)]
                      : i;
    const bool isThere = front.streams[k].advance();
    // Entry 0 describes no pair.
    if (options_.readLcps) front.entries[k].take(front.streams[k]);
    if (!isThere) continue;
    if (heap) {
      heap->prime(k);
    } else if (blocks && !front.text().prefixGoesOn(front.suffixOf(k))) {
      blocks->prime(k);
    } else {
      if (blocks) blocks->handOver();
      blocks.reset();
      list.prime(k);
    }
    state_.taken++;
  }
}

MergeReport Run::mergeInto(const std::function<Sink&()>& makeSink) {
  const int count = lengths_.streams();
  SuffixStreams streams(*text_,
                        StreamFiles(paths_, lengths_, options_.zeroOrigin),
                        buffers_.records, slices(), memory_, time_);
  if (options_.keepFilesOpen) {
    raiseDescriptorLimit();
    for (SuffixStream& stream : streams.streams) stream.keepOpen();
  }
  Sink& sink = makeSink();
  LcpStreams entries;
  if (options_.readLcps) {
    entries = LcpStreams(paths_, count, slices(), memory_, time_);
  }

  Cost cost;
  SuffixCompare suffixCompare(*text_, options_.usePrefixKeys,
                              options_.processor);
  std::shared_ptr<const Stretches> stretches = options_.stretches;
  if (stretches == nullptr || !usesStretches(options_)) {
    stretches = std::make_shared<const Stretches>(
        usesStretches(options_) ? stretchesOf(*text_) : Stretches());
  }
  StreamCompare compare(suffixCompare, *stretches, streams);
  Front front(streams, entries, compare, cost);
  // The current suffix of each stream, and its place in the ordering.
  memory_.add(int64_t{count} * (options_.heap ? 8 + 4 : 8 + 12));
  const bool byKeys =
      !options_.heap && options_.usePrefixKeys && !options_.walkOnly;
  LcpList list(front);
  std::optional<MergeHeap> heap;
  std::optional<BlockOrder> blocks;
  std::unique_ptr<KeyRows> rows;
  if (options_.heap) heap.emplace(front);
  const bool areFew = byKeys && canMergeByRows(front, options_.processor);
  if (byKeys && !areFew && count > kShortList &&
      count <= BlockOrder::kMostStreams) {
    blocks.emplace(front, list, options_.processor);
  }
  prime(front, list, blocks, heap);
  observer_.ready(buffers_);

  sink.begin(state_);
  if (heap) mergeByHeap(*heap, front, sink, state_);
  if (areFew) {
    rows = makeKeyRows(front, list, options_.processor);
    mergeByRows(*rows, front, sink, state_);
    rows->handOver();
  }
  if (blocks) mergeOneByOne(*blocks, front, sink, state_);
  mergeOneByOne(list, front, sink, state_);
  sink.finish();

  MergeReport report;
  report.suffixes = state_.taken;
  report.cost = cost;
  if (trees_ != nullptr) {
    report.trees = trees_->trees();
    report.lcps = trees_->lcps();
  }
  report.lcpTime = front.lcpTime.milliseconds();
  report.memory = memory_.bytes();
  report.io = time_;
  observer_.merged(report);
  return report;
}

MergeReport Run::intoFiles() {
  // If it fails, creating the first file in it does, too.
  const bool unmade =
      mkdir(paths_.outputFolder.c_str(), 0755) != 0 && errno != EEXIST;
  const Blame folder = unmade ? blameSystem(paths_.outputFolder) : Blame{};
  readInputs();
  RecordWriter dividers(paths_.dividers, time_);
  std::optional<ArraySink> array;
  std::optional<TreeSink> trees;
  MergeReport report = mergeInto([&]() -> Sink& {
    if (!dividers.create()) {
      fail(unmade ? folder : dividers.blame(),
           "can't open ST dividers file %s for writing",
           paths_.dividers.c_str());
    }
    if (options_.array) {
      return array.emplace(
          paths_, buffers_.output, options_.lcps, memory_, time_,
          [this](const ArrayFlush& flush) { observer_.flushed(flush); });
    }
    const TreeSink::Options limits = {buffers_.output, options_.reorderTrees,
                                      options_.measureCompaction};
    trees.emplace(*text_, paths_, limits, dividers, memory_, time_,
                  [this](const TreeFlush& flush) { observer_.flushed(flush); });
    trees_ = &*trees;
    return *trees;
  });
  if (!dividers.close()) {
    fail(dividers.blame(), "could not write ST dividers file %s",
         paths_.dividers.c_str());
  }
  report.io = time_;
  return report;
}

}  // namespace

MergeReport merge(const MergeOptions& options, MergeObserver& observer) {
  return Run(options, observer).intoFiles();
}

MergeReport merge(const MergeOptions& options, Sink& sink,
                  MergeObserver& observer) {
  return Run(options, observer).into(sink);
}

std::shared_ptr<const Collection> loadStrings(const MergeOptions& options) {
  const DataPaths paths = pathsOf(options);
  MemoryCount memory;
  IoTime time;
  return std::make_shared<const Collection>(
      paths, readLengths(paths, options.mostInputs).bits, options.mapStrings,
      memory, time);
}

std::shared_ptr<const Stretches> findStretches(const MergeOptions& options,
                                               const Collection& strings) {
  if (!usesStretches(options)) return nullptr;
  return std::make_shared<const Stretches>(stretchesOf(strings));
}

StreamFiles streamFilesOf(const MergeOptions& options) {
  DataPaths paths = pathsOf(options);
  const Lengths lengths = readLengths(paths, options.mostInputs);
  if (options.zeroOrigin) testOrigins(lengths, paths);
  testNumberedPaths(paths, lengths.inputs(), lengths.streams(),
                    options.readLcps);
  return {std::move(paths), lengths, options.zeroOrigin};
}

}  // namespace palvor
