#include "merge_results.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "output/divider.h"
#include "output/tree_node.h"
#include "run/options.h"
#include "run/values.h"
#include "sources/suffix.h"
#include "sources/suffix_streams.h"
#include "support/tree_reader.h"
#include "watch.h"

namespace {

// A suffix as its words, which can be sorted and compared.
using Words = std::array<uint32_t, 4>;
static_assert(sizeof(Words) == sizeof(Suffix));

// The whole records of a file.
template <typename Record>
std::vector<Record> recordsOf(const std::string& bytes) {
  std::vector<Record> records(bytes.size() / sizeof(Record));
  if (records.empty()) return records;
  std::memcpy(records.data(), bytes.data(), records.size() * sizeof(Record));
  return records;
}

uint32_t inputOf(const Words& suffix) { return suffix[0] >> 2; }

// The records of all streams, sorted, with the input numbers of the whole
// folder. The merge must have refused them if one names no suffix.
std::vector<Words> streamRecords(const CaseFolder& folder) {
  std::vector<Words> all;
  if (sufBuffSize == 0) return all;  // then nothing is merged
  for (int j = 0; j < streamCount(); j++) {
    const std::string name = "x.ST/x_" + std::to_string(j) + ".stpsa";
    for (Words suffix : recordsOf<Words>(folder.read(name))) {
      if (iorigin != 0) suffix[0] += alens[j];
      require(inputOf(suffix) < static_cast<uint32_t>(ninputs) &&
                  suffix[1] < blengths[inputOf(suffix)] / 2,
              name + " names a suffix that is not there");
      all.push_back(suffix);
    }
  }
  std::sort(all.begin(), all.end());
  return all;
}

void testTree(const std::string& bytes, const DividerRecord& expected,
              std::vector<Leaf>& leaves) {
  const std::string name = "tree " + std::to_string(expected.tree);
  require(
      bytes.size() == sizeof(TreeNode) * static_cast<size_t>(expected.nodes),
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

void testMergedArray(const CaseFolder& folder) {
  const std::string bytes = folder.read("x.ST/x.stpsa");
  const std::vector<Words> expected = streamRecords(folder);
  std::vector<Words> merged = recordsOf<Words>(bytes);
  std::sort(merged.begin(), merged.end());
  require(bytes.size() % sizeof(Words) == 0 && merged == expected,
          "the merged array holds other records than the streams");
  if (larray == 0) return;
  require(folder.read("x.ST/x.stlcp").size() == 4 * expected.size(),
          "the merged array and its LCP file differ in length");
}

void testMergedTrees(const CaseFolder& folder) {
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
  std::vector<Leaf> expected;
  for (const Words& suffix : streamRecords(folder)) {
    const uint32_t input = inputOf(suffix);
    expected.emplace_back(blengths[input] - 2 * suffix[1], input);
  }
  std::sort(leaves.begin(), leaves.end());
  std::sort(expected.begin(), expected.end());
  require(leaves == expected, "the trees hold other suffixes than the streams");
}
