// What a merge of many genomes costs on a cluster, told beforehand: prepared
// genome by genome, merged and proved range by range, joined.
//
// docs/scale.md tells what the model leaves out, and how it was measured.

#ifndef PALVOR_KIT_MERGE_COST_MODEL_H_
#define PALVOR_KIT_MERGE_COST_MODEL_H_

#include <cstdint>
#include <string>
#include <vector>

namespace kit {

struct Collection {
  uint64_t genomes = 0;     // one suffix array each
  uint64_t characters = 0;  // of all genomes together; as many suffixes
};

struct Cluster {
  uint64_t nodes = 1;
  uint64_t cores = 1;                // of a node, to be used
  uint64_t nodeMemory = 0;           // bytes; 0: any job finds enough
  uint64_t disk = 500'000'000;       // bytes a second, all nodes together
  uint64_t network = 1'000'000'000;  // bytes a second, of each node
};

// Nanoseconds of one core, system calls included. How alike genomes are decides
// about merging and proving; these were measured with strains of one species
// (docs/scale.md has others).
struct StepTimes {
  double prepare = 50;  // a character
  double likes = 4;     // a character of all genomes, by each merge of a range
  double merge = 110;   // a suffix
  double check = 350;   // a suffix
  double copy = 45;     // a suffix, when parts are joined
};

// One of the steps, which is done in jobs of one thread each.
struct StepCost {
  std::string step;
  uint64_t jobs = 0;
  uint64_t atOnce = 0;   // that are done side by side
  uint64_t memory = 0;   // bytes, of a job
  uint64_t read = 0;     // bytes, by a job over the network
  uint64_t written = 0;  // the same
  double seconds = 0;    // of a job, with all others beside it
  double allSeconds = 0;
};

// The steps, in order. With 0 ranges they are as many that each place for a job
// has two. Where a node has not got the memory to find out what strings have in
// common, it is not done, as by the command. Throws std::runtime_error if a job
// does not fit a node's memory.
std::vector<StepCost> estimateCosts(const Collection& collection,
                                    const Cluster& cluster,
                                    const StepTimes& times, uint64_t ranges);

// Bytes on the disk when parts and merged array are both there.
uint64_t diskNeed(const Collection& collection);

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_COST_MODEL_H_
