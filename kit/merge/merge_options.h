// Options that the commands that merge have in common.

#ifndef PALVOR_KIT_MERGE_MERGE_OPTIONS_H_
#define PALVOR_KIT_MERGE_MERGE_OPTIONS_H_

#include <CLI/CLI.hpp>

#include "kit/merge/range_merger.h"

namespace kit {

// The folder, its prefix, and the letters that palvor has for others.
void addMergePlaces(CLI::App& command, MergePlaces& places);

// --jobs and --memory
void addMergeMeans(CLI::App& command, MergeMeans& means);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_MERGE_OPTIONS_H_
