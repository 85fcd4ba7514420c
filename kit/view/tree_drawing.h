// One small tree as a picture.

#ifndef PALVOR_KIT_VIEW_TREE_DRAWING_H_
#define PALVOR_KIT_VIEW_TREE_DRAWING_H_

#include <string>

#include "kit/view/genome_names.h"

namespace kit {

// Prints a .stree file to standard output in Graphviz's language, with a title
// that says which tree of how many it is, and a legend. Groups are drawn as
// boxes side by side. With a data folder, DIR/PREFIX.ST, edges are labelled
// with their characters and leaves with their positions, otherwise with lengths
// in bits. Throws std::exception, which names the file, if it is no tree or too
// large for a picture.
void drawTree(const std::string& path, const std::string& dataFolder,
              const GenomeNames& names);

}  // namespace kit

#endif  // PALVOR_KIT_VIEW_TREE_DRAWING_H_
