// The tree output: one finished tree to its file, and its divider record to
// the dividers file.

#ifndef PALVOR_OUTPUT_TREE_FLUSH_H_
#define PALVOR_OUTPUT_TREE_FLUSH_H_

// Appends the current tree's divider record to the file open as
// `dividersFile`, writes the tree to <streePrefix>_<tree>.stree, in traversal
// order with `reorder`, reports it, rolls the counters up, and leaves an empty
// tree. The tree must hold a suffix, and `lastSuffix` must be its last. The
// run ends if something could not be wholly written.
void flushTree();

#endif  // PALVOR_OUTPUT_TREE_FLUSH_H_
