// Genomes that descend from each other along a random tree.

#ifndef PALVOR_KIT_SIMULATE_PHYLOGENY_H_
#define PALVOR_KIT_SIMULATE_PHYLOGENY_H_

#include <functional>
#include <string>

#include "kit/simulate/random_genome.h"

namespace kit {

// Gets the number of a genome, from 0, and the genome.
using GenomeSink = std::function<void(int, const std::string&)>;

// Lets so many genomes (1 or more) descend from `ancestor`, which has
// characters, and hands them out in the order of the tree's leaves. All lie
// `divergence` mutations for a character (0 to below 1) from it, which a branch
// shares with the genomes that come from it. Every split of a group is as
// likely as any other (Yule 1925). Returns the tree, in Newick's notation, with
// the branches' mutations for a character, and leaves named by `nameOf`.
std::string descend(Random& random, const std::string& ancestor, int genomes,
                    double divergence, const GenomeSink& sink,
                    const std::function<std::string(int)>& nameOf);

}  // namespace kit

#endif  // PALVOR_KIT_SIMULATE_PHYLOGENY_H_
