// The divider record: one for each tree, in the .stdiv file, in the order in
// which the trees were written. Tree t holds the run of the merged order from
// its first to its last suffix, so the records map prefixes to trees.

#ifndef PALVOR_FORMAT_DIVIDER_H_
#define PALVOR_FORMAT_DIVIDER_H_

#include <cstdint>

namespace palvor {

struct DividerRecord {
  uint32_t lastPrefix;   // prefix0 of the tree's last suffix
  uint32_t firstPrefix;  // prefix0 of its first suffix
  int32_t tree;          // its number, also in its file's name
  int32_t nodes;         // records in its .stree file, the root included
  uint16_t maxDepth;     // low 16 bits of its largest node depth
  uint8_t reserved[6];   // always zero
};
static_assert(sizeof(DividerRecord) == 24);

}  // namespace palvor

#endif  // PALVOR_FORMAT_DIVIDER_H_
