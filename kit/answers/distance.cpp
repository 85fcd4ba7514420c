#include "kit/answers/distance.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "kit/answers/array_cuts.h"
#include "kit/answers/array_pieces.h"
#include "kit/answers/common_substrings.h"
#include "kit/answers/genome_matrix.h"
#include "kit/answers/genomes.h"
#include "kit/answers/likeness.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/neighbour_joining.h"
#include "kit/answers/shared_kmers.h"
#include "kit/standard_output.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

// What is known of all pairs.
struct Comparison {
  std::vector<GenomeMatrix<uint64_t>> shared;  // for each k
  std::optional<GenomeMatrix<double>> acs;
};

// Where pieces of the order tell what all of it does.
ArrayCuts cutsFor(const DistanceOptions& options, const MergedArray& array,
                  const Genomes& genomes) {
  const auto shortest = std::min_element(options.k.begin(), options.k.end());
  const uint32_t most = shortest == options.k.end() ? UINT32_MAX : *shortest;
  ArrayCuts cuts = cutsBelow(array, options.jobs, most);
  if (!options.acs) return cuts;
  return cutsAmong(array, std::move(cuts), genomes,
                   std::vector<bool>(genomes.count(), true), genomes.count());
}

Comparison compare(const DistanceOptions& options, const MergedArray& array,
                   const MergedInputs& inputs, const Genomes& genomes) {
  std::vector<SharedKmers> kmers;
  kmers.reserve(options.k.size());
  for (const uint32_t k : options.k) kmers.emplace_back(inputs, genomes, k);
  std::optional<CommonSubstrings> substrings;
  if (options.acs) substrings.emplace(genomes);
  std::mutex mutex;  // guards these while pieces are added to them
  const ArrayCuts cuts = cutsFor(options, array, genomes);
  passPieces(array, "comparing genomes", cuts, options.jobs,
             [&](size_t, const PassPiece& pass) {
               std::vector<SharedKmers> own;
               own.reserve(kmers.size());
               for (const SharedKmers& all : kmers) {
                 own.push_back(all.emptied());
               }
               std::optional<CommonSubstrings> ownSubstrings;
               if (options.acs) ownSubstrings.emplace(genomes);
               pass([&](std::span<const Suffix> suffixes,
                        std::span<const LcpEntry> entries) {
                 for (SharedKmers& counted : own) {
                   counted.take(suffixes, entries);
                 }
                 if (ownSubstrings) ownSubstrings->take(suffixes, entries);
               });
               const std::lock_guard lock(mutex);
               for (size_t i = 0; i < own.size(); i++) kmers[i].add(own[i]);
               if (substrings) substrings->add(*ownSubstrings);
             });
  Comparison result;
  for (SharedKmers& counted : kmers) result.shared.push_back(counted.finish());
  if (substrings) {
    std::vector<uint64_t> lengths(genomes.count());
    for (uint32_t i = 0; i < inputs.count(); i++) {
      lengths[genomes.of(i)] += inputs.length(i);
    }
    result.acs = acsDistances(substrings->finish(), lengths);
  }
  return result;
}

Cell finite(double number) {
  return std::isfinite(number) ? Cell(number) : Cell();
}

void printTable(const DistanceOptions& options, const Comparison& comparison,
                const Genomes& genomes) {
  std::vector<std::string> columns = {
      "a",   "b", "k", "shared", "jaccard", "containment_a", "containment_b",
      "mash"};
  if (comparison.acs) columns.emplace_back("acs");
  TablePrinter printer(columns, options.json);
  for (size_t i = 0; i < options.k.size(); i++) {
    for (uint32_t a = 0; a < genomes.count(); a++) {
      for (uint32_t b = a + 1; b < genomes.count(); b++) {
        const Likeness like =
            likenessOf(comparison.shared[i], a, b, options.k[i]);
        std::vector<Cell> cells = {genomes.name(a),        genomes.name(b),
                                   uint64_t{options.k[i]}, like.shared,
                                   like.jaccard,           like.containmentA,
                                   like.containmentB,      like.mash};
        if (comparison.acs) cells.push_back(finite((*comparison.acs)(a, b)));
        printer.row(cells);
      }
    }
  }
}

GenomeMatrix<double> distancesOf(const DistanceOptions& options,
                                 const Comparison& comparison) {
  if (options.measure == DistanceMeasure::kAcs) return *comparison.acs;
  const GenomeMatrix<uint64_t>& shared = comparison.shared[0];
  const uint32_t k = options.k[0];
  if (options.measure == DistanceMeasure::kMash) {
    return mashDistances(shared, k);
  }
  GenomeMatrix<double> distances(shared.genomes());
  for (uint32_t a = 0; a < shared.genomes(); a++) {
    for (uint32_t b = 0; b < shared.genomes(); b++) {
      if (a != b) distances(a, b) = 1 - likenessOf(shared, a, b, k).jaccard;
    }
  }
  return distances;
}

// A square matrix, whose names may have more than ten characters but no blanks.
void printPhylip(const GenomeMatrix<double>& distances,
                 const Genomes& genomes) {
  writeOutput(fmt::format("{}\n", genomes.count()));
  for (uint32_t a = 0; a < genomes.count(); a++) {
    std::string line = genomes.name(a);
    std::replace_if(
        line.begin(), line.end(),
        [](unsigned char c) { return std::isspace(c) != 0; }, '_');
    for (uint32_t b = 0; b < genomes.count(); b++) {
      line += fmt::format(" {:.8f}", distances(a, b));
    }
    writeOutput(line + '\n');
  }
}

void testFinite(const GenomeMatrix<double>& distances, const Genomes& genomes) {
  for (uint32_t a = 0; a < genomes.count(); a++) {
    for (uint32_t b = 0; b < genomes.count(); b++) {
      if (std::isfinite(distances(a, b))) continue;
      throw std::runtime_error(
          fmt::format("{} and {} have nothing in common, so that they have no "
                      "distance",
                      genomes.name(a), genomes.name(b)));
    }
  }
}

}  // namespace

void distance(DistanceOptions options) {
  const bool table = options.format == DistanceFormat::kTsv;
  if (table && options.measure != DistanceMeasure::kMash) {
    throw std::runtime_error(
        "--measure is for --format phylip and newick: the table has all "
        "distances, with --acs that of common substrings, too");
  }
  if (!table && options.measure == DistanceMeasure::kAcs) {
    options.acs = true;
    options.k.clear();
  } else if (!table && options.k.size() != 1) {
    throw std::runtime_error("a matrix or tree is of one k");
  }
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);
  const Comparison comparison = compare(options, array, inputs, genomes);
  if (table) {
    printTable(options, comparison, genomes);
  } else {
    const GenomeMatrix<double> distances = distancesOf(options, comparison);
    testFinite(distances, genomes);
    if (options.format == DistanceFormat::kPhylip) {
      printPhylip(distances, genomes);
    } else {
      writeOutput(neighbourJoining(distances, genomes.names()) + '\n');
    }
  }
  finishOutput();
}

}  // namespace kit
