// What every command takes that answers from a merged order: where the data
// folder is, where palvor wrote, and which genomes the inputs belong to.

#ifndef PALVOR_KIT_ANSWERS_MERGED_OPTIONS_H_
#define PALVOR_KIT_ANSWERS_MERGED_OPTIONS_H_

#include <cstdint>
#include <string>

namespace CLI {
class App;
}

namespace kit {

struct MergedOptions {
  std::string inputdir;  // as palvor's: DIR/, with its "/"
  std::string prefix;
  std::string odir, opfx;  // as palvor's -o and -p; empty: the same
  uint64_t nmerge = 0;     // as palvor's -N; 0: all inputs
  std::string groups;      // table of genomes; empty: each file is a genome

  // Paths of the data folder's files, and of the merged ones, as far as their
  // kind.
  std::string dataBase() const;
  std::string mergedBase() const;
};

// Adds these to a command. The options must outlive it.
void addMergedOptions(CLI::App& command, MergedOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_MERGED_OPTIONS_H_
