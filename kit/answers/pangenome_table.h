// What is told of how many k-mers the genomes share, and how.

#ifndef PALVOR_KIT_ANSWERS_PANGENOME_TABLE_H_
#define PALVOR_KIT_ANSWERS_PANGENOME_TABLE_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "kit/answers/kmer_spectrum.h"
#include "kit/table_printer.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kit {

// What to print: a line for each k, for each k and number of genomes that have
// a k-mer, or for each k and number of genomes chosen.
enum class PangenomeTable { kSummary, kHistogram, kGrowth };

struct PangenomeChoice {
  KmerLengths k = {1, 100};
  std::vector<double> quorums = {1.0, 0.95};
  // Whether a k-mer and its reverse complement count as one; not given: where
  // both strands are in.
  std::optional<bool> canonical;
  PangenomeTable table = PangenomeTable::kSummary;
  bool json = false;  // all three, an object for each k
};

// Adds the options for it to a command. The choice must outlive the command.
//   needed  an option without which these say nothing; null: none
void addPangenomeChoice(CLI::App& command, PangenomeChoice& choice,
                        CLI::Option* needed);

// Throws std::runtime_error if there is no such k.
void testChoice(const PangenomeChoice& choice);

//   totals  occurrences of k-mers, see kmerTotals
void printPangenome(const PangenomeChoice& choice, const KmerCounts& counts,
                    std::vector<uint64_t> totals, const WriteText& write);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_PANGENOME_TABLE_H_
