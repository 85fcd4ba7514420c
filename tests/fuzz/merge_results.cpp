#include "merge_results.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "palvor/format/divider.h"
#include "palvor/format/suffix.h"
#include "palvor/format/tree_node.h"
#include "palvor/io/lengths_files.h"
#include "support/tree_reader.h"
#include "watch.h"

namespace {

using palvor::DividerRecord;
using palvor::Lengths;
using palvor::MergeOptions;

// A suffix as its words, which can be sorted and compared.
using Words = std::array<uint32_t, 4>;
static_assert(sizeof(Words) == sizeof(palvor::Suffix));

// The whole records of a file.
template <typename Record>
std::vector<Record> recordsOf(const std::string& bytes) {
  std::vector<Record> records(bytes.size() / sizeof(Record));
  if (records.empty()) return records;
  std::memcpy(records.data(), bytes.data(), records.size() * sizeof(Record));
  return records;
}

uint32_t inputOf(const Words& suffix) { return suffix[0] >> 2; }

Lengths lengthsOf(const MergeOptions& options) {
  return palvor::readLengths(
      palvor::composePaths(options.input, options.arrays, options.output),
      options.mostInputs);
}

// Whether a stream's buffer holds a record. If not, nothing is merged.
bool holdsARecord(const MergeOptions& options, int streams) {
  return options.streamBuffer != 0 ? options.streamBuffer >= 16
                                   : options.memory >= int64_t{16} * streams;
}

// The records of all streams, sorted, with the input numbers of the whole
// folder. The merge must have refused them if one names no suffix.
std::vector<Words> streamRecords(const CaseFolder& folder,
                                 const MergeOptions& options) {
  const Lengths lengths = lengthsOf(options);
  std::vector<Words> all;
  if (!holdsARecord(options, lengths.streams())) return all;
  uint64_t before = 0;  // inputs
  for (int j = 0; j < lengths.streams(); j++) {
    const std::string name = "x.ST/x_" + std::to_string(j) + ".stpsa";
    for (Words suffix : recordsOf<Words>(folder.read(name))) {
      const uint64_t input =
          inputOf(suffix) + (options.zeroOrigin ? before : 0);
      require(
          input < lengths.bits.size() && suffix[1] < lengths.bits[input] / 2,
          name + " names a suffix that is not there");
      suffix[0] = static_cast<uint32_t>(input) << 2 | (suffix[0] & 3);
      all.push_back(suffix);
    }
    before += lengths.partitions.empty()
                  ? 1
                  : lengths.partitions[static_cast<size_t>(j)];
  }
  std::sort(all.begin(), all.end());
  return all;
}

void testTree(const std::string& bytes, const DividerRecord& expected,
              std::vector<Leaf>& leaves) {
  const std::string name = "tree " + std::to_string(expected.tree);
  require(bytes.size() ==
              sizeof(palvor::TreeNode) * static_cast<size_t>(expected.nodes),
          name + " has not the records that its divider says");
  try {
    const ReadTree tree = readTree(bytes);
    require(tree.maxDepth % 65536 == expected.maxDepth,
            name + " has not the depth that its divider says");
    leaves.insert(leaves.end(), tree.leaves.begin(), tree.leaves.end());
  } catch (const std::exception& error) {
    require(false, name + ": " + error.what());
  }
}

}  // namespace

void testMergedArray(const CaseFolder& folder, const MergeOptions& options) {
  const std::string bytes = folder.read("x.ST/x.stpsa");
  const std::vector<Words> expected = streamRecords(folder, options);
  std::vector<Words> merged = recordsOf<Words>(bytes);
  std::sort(merged.begin(), merged.end());
  require(bytes.size() % sizeof(Words) == 0 && merged == expected,
          "the merged array holds other records than the streams");
  if (!options.lcps) return;
  require(folder.read("x.ST/x.stlcp").size() == 4 * expected.size(),
          "the merged array and its LCP file differ in length");
}

void testMergedTrees(const CaseFolder& folder, const MergeOptions& options) {
  const std::string bytes = folder.read("x.ST/x.stdiv");
  require(bytes.size() % sizeof(DividerRecord) == 0,
          "the dividers file ends within a record");
  std::vector<Leaf> leaves;
  int number = 0;
  for (const DividerRecord& record : recordsOf<DividerRecord>(bytes)) {
    require(record.tree == number++, "a divider with a wrong number");
    testTree(folder.read("x.ST/x_" + std::to_string(record.tree) + ".stree"),
             record, leaves);
  }
  // Each suffix as a leaf gives it: its length in bits, and its input.
  const Lengths lengths = lengthsOf(options);
  std::vector<Leaf> expected;
  for (const Words& suffix : streamRecords(folder, options)) {
    const uint32_t input = inputOf(suffix);
    expected.emplace_back(lengths.bits[input] - 2 * suffix[1], input);
  }
  std::sort(leaves.begin(), leaves.end());
  std::sort(expected.begin(), expected.end());
  require(leaves == expected, "the trees hold other suffixes than the streams");
}
