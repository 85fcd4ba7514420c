// Looks up texts in suffix tree partitions: dividers tell which trees may have
// a text, and in each of these a walk of as many steps as the text has
// branchings leads to the records below which all suffixes begin with it.

#ifndef PALVOR_KIT_ANSWERS_TREE_SEARCH_H_
#define PALVOR_KIT_ANSWERS_TREE_SEARCH_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "kit/answers/mapped_file.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/pattern.h"
#include "kit/records.h"

namespace kit {

// Whether trees are there, and no merged array.
bool onlyTreesAreThere(const std::string& base);

// All functions throw FileError, which names the tree and the record, for one
// that no tree of these inputs can have, as far as that is met.
class TreeSearch {
 public:
  // Reads <base>.stdiv. Throws FileError if its records cannot follow one
  // another, or if the trees are too few for the inputs, which must outlive
  // this, as the strings must: the merge did not finish.
  TreeSearch(const MergedInputs& inputs, MergedStrings& strings,
             const std::string& base);

  // Calls `take` for each suffix that begins with a pattern. Each is compared
  // with it.
  void eachSuffix(const Pattern& pattern,
                  const std::function<void(const Suffix&)>& take);

 private:
  using Tree = MappedRecords<TreeNode>;

  // A record, and its depth: bits from the root to its end.
  struct Place {
    uint32_t record;
    uint64_t depth;
  };

  std::string treePath(size_t tree) const;
  const Tree& open(size_t tree);
  [[noreturn]] void refuse(size_t tree, uint64_t record,
                           const std::string& reason) const;

  void searchTree(size_t tree, const Pattern& pattern,
                  const std::function<void(const Suffix&)>& take);
  std::optional<Place> descend(size_t tree, const Tree& nodes,
                               const Pattern& pattern) const;
  void pushChild(size_t tree, const Tree& nodes, Place parent, uint32_t child,
                 std::vector<Place>& pending) const;
  Suffix suffixOf(size_t tree, const Tree& nodes, Place leaf) const;
  bool beginsWith(const Suffix& suffix, const Pattern& pattern);

  const MergedInputs& inputs_;
  MergedStrings& strings_;
  std::string base_;
  std::vector<DividerRecord> dividers_;
  std::unordered_map<size_t, Tree> open_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_TREE_SEARCH_H_
