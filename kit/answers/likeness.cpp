#include "kit/answers/likeness.h"

#include <algorithm>
#include <cmath>

namespace kit {
namespace {

double part(uint64_t some, uint64_t all) {
  return all == 0 ? 0 : static_cast<double>(some) / static_cast<double>(all);
}

}  // namespace

Likeness likenessOf(const GenomeMatrix<uint64_t>& shared, uint32_t a,
                    uint32_t b, uint32_t k) {
  const uint64_t both = shared(a, b);
  const double jaccard = part(both, shared(a, a) + shared(b, b) - both);
  const double mash =
      jaccard == 0 ? 1 : std::log((1 + jaccard) / (2 * jaccard)) / k;
  return {both, jaccard, part(both, shared(a, a)), part(both, shared(b, b)),
          std::clamp(mash, 0.0, 1.0)};
}

GenomeMatrix<double> mashDistances(const GenomeMatrix<uint64_t>& shared,
                                   uint32_t k) {
  GenomeMatrix<double> distances(shared.genomes());
  for (uint32_t a = 0; a < shared.genomes(); a++) {
    for (uint32_t b = 0; b < shared.genomes(); b++) {
      if (a != b) distances(a, b) = likenessOf(shared, a, b, k).mash;
    }
  }
  return distances;
}

}  // namespace kit
