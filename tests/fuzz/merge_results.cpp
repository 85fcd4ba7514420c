#include "merge_results.h"

#include <algorithm>
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

// The whole records of a file.
template <typename Record>
std::vector<Record> recordsOf(const std::string& bytes) {
  std::vector<Record> records(bytes.size() / sizeof(Record));
  if (records.empty()) return records;
  std::memcpy(records.data(), bytes.data(), records.size() * sizeof(Record));
  return records;
}

// The records of all streams, with the input numbers of the whole folder. The
// merge must have refused them if one names no suffix.
std::vector<Suffix> streamRecords(const CaseFolder& folder) {
  std::vector<Suffix> all;
  if (sufBuffSize == 0) return all;  // then nothing is merged
  for (int j = 0; j < streamCount(); j++) {
    const std::string name = "x.ST/x_" + std::to_string(j) + ".stpsa";
    for (Suffix suffix : recordsOf<Suffix>(folder.read(name))) {
      if (iorigin != 0) suffix.input += alens[j];
      const uint32_t input = inputNumber(suffix);
      require(input < static_cast<uint32_t>(ninputs) &&
                  suffix.pos < blengths[input] / 2,
              name + " names a suffix that is not there");
      all.push_back(suffix);
    }
  }
  return all;
}

void sortRecords(std::vector<Suffix>& records) {
  std::sort(records.begin(), records.end(),
            [](const Suffix& a, const Suffix& b) {
              return std::memcmp(&a, &b, sizeof(Suffix)) < 0;
            });
}

// Each suffix as a leaf gives it: its length in bits, and its input.
std::vector<Leaf> leavesOf(const std::vector<Suffix>& records) {
  std::vector<Leaf> leaves;
  for (const Suffix& suffix : records) {
    const uint32_t input = inputNumber(suffix);
    leaves.emplace_back(blengths[input] - 2 * suffix.pos, input);
  }
  return leaves;
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
  std::vector<Suffix> merged = recordsOf<Suffix>(bytes);
  std::vector<Suffix> expected = streamRecords(folder);
  require(bytes.size() == sizeof(Suffix) * expected.size(),
          "the merged array has " + std::to_string(bytes.size()) +
              " bytes, the streams have " + std::to_string(expected.size()) +
              " records");
  sortRecords(merged);
  sortRecords(expected);
  require(merged.empty() ||
              std::memcmp(merged.data(), expected.data(), bytes.size()) == 0,
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
  std::vector<Leaf> expected = leavesOf(streamRecords(folder));
  std::sort(leaves.begin(), leaves.end());
  std::sort(expected.begin(), expected.end());
  require(leaves == expected, "the trees hold other suffixes than the streams");
}
