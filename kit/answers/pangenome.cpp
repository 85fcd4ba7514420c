#include "kit/answers/pangenome.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/pangenome_statistics.h"
#include "kit/json.h"
#include "kit/standard_output.h"
#include "kit/table_printer.h"

namespace kit {
namespace {

KmerCounts countKmers(const MergedArray& array, const MergedInputs& inputs,
                      const Genomes& genomes, KmerLengths k, bool canonical) {
  KmerSpectrum kmers(inputs, genomes, k, canonical);
  array.pass("counting k-mers", [&](std::span<const Suffix> suffixes,
                                    std::span<const LcpEntry> entries) {
    kmers.take(suffixes, entries);
  });
  return kmers.finish();
}

std::string quorumName(double quorum) { return fmt::format("core_{}", quorum); }

// Prints the answers, k by k.
class PangenomePrinter {
 public:
  PangenomePrinter(const PangenomeOptions& options, const KmerCounts& counts,
                   std::vector<uint64_t> totals)
      : options_(options),
        counts_(counts),
        totals_(std::move(totals)),
        growth_(counts.genomes(), std::nullopt) {
    for (const double quorum : options.quorums) {
      cores_.emplace_back(counts.genomes(), quorum);
    }
  }

  void json() const {
    eachK([&](uint32_t k) {
      Json object = {{"k", k},
                     {"total", total(k)},
                     {"distinct", distinct(k)},
                     {"histogram", counts_.of(k)},
                     {"growth", growth_.of(counts_.of(k))}};
      for (size_t q = 0; q < cores_.size(); q++) {
        object[quorumName(options_.quorums[q])] = cores_[q].of(counts_.of(k));
      }
      if (const auto alpha = alphaOf(k)) object["alpha"] = *alpha;
      const HillNumbers hill = hillNumbers(counts_.of(k));
      object["hill_1"] = hill.order1;
      object["hill_2"] = hill.order2;
      writeOutput(jsonLine(object));
    });
  }

  void summary() const {
    std::vector<std::string> columns = {"k", "total", "distinct", "unique"};
    addQuorums(columns);
    columns.insert(columns.end(), {"alpha", "hill_1", "hill_2"});
    TablePrinter printer(columns, false);
    eachK([&](uint32_t k) {
      const auto row = counts_.of(k);
      std::vector<Cell> cells = {uint64_t{k}, total(k), distinct(k), row[0]};
      for (const double quorum : options_.quorums) {
        const uint32_t wanted = quorumOf(quorum, counts_.genomes());
        cells.emplace_back(std::accumulate(row.begin() + (wanted - 1),
                                           row.end(), uint64_t{0}));
      }
      const auto alpha = alphaOf(k);
      cells.emplace_back(alpha ? Cell(*alpha) : Cell());
      const HillNumbers hill = hillNumbers(row);
      cells.emplace_back(hill.order1);
      cells.emplace_back(hill.order2);
      printer.row(cells);
    });
  }

  void histogram() const {
    TablePrinter printer({"k", "genomes", "kmers"}, false);
    eachK([&](uint32_t k) {
      uint64_t genomes = 0;
      for (const uint64_t count : counts_.of(k)) {
        printer.row({uint64_t{k}, ++genomes, count});
      }
    });
  }

  void growth() const {
    std::vector<std::string> columns = {"k", "genomes", "distinct"};
    addQuorums(columns);
    TablePrinter printer(columns, false);
    eachK([&](uint32_t k) {
      std::vector<std::vector<double>> curves = {growth_.of(counts_.of(k))};
      for (const ExpectedCounts& core : cores_) {
        curves.push_back(core.of(counts_.of(k)));
      }
      for (uint32_t m = 0; m < counts_.genomes(); m++) {
        std::vector<Cell> cells = {uint64_t{k}, uint64_t{m} + 1};
        for (const auto& curve : curves) cells.emplace_back(curve[m]);
        printer.row(cells);
      }
    });
  }

 private:
  void eachK(const std::function<void(uint32_t k)>& print) const {
    for (uint32_t k = options_.k.min; k <= options_.k.max; k++) print(k);
  }

  void addQuorums(std::vector<std::string>& columns) const {
    for (const double quorum : options_.quorums) {
      columns.push_back(quorumName(quorum));
    }
  }

  uint64_t total(uint32_t k) const { return totals_[k - options_.k.min]; }

  uint64_t distinct(uint32_t k) const {
    const auto row = counts_.of(k);
    return std::accumulate(row.begin(), row.end(), uint64_t{0});
  }

  std::optional<double> alphaOf(uint32_t k) const {
    return heapsAlpha(growth_.of(counts_.of(k)));
  }

  const PangenomeOptions& options_;
  const KmerCounts& counts_;
  std::vector<uint64_t> totals_;
  ExpectedCounts growth_;
  std::vector<ExpectedCounts> cores_;
};

}  // namespace

void pangenome(const PangenomeOptions& options) {
  if (options.k.min > options.k.max) {
    throw std::runtime_error(fmt::format("--min-k {} is more than --max-k {}",
                                         options.k.min, options.k.max));
  }
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);
  const bool canonical = isCanonical(inputs, options.canonical);
  const KmerCounts counts =
      countKmers(array, inputs, genomes, options.k, canonical);
  const PangenomePrinter printer(options, counts,
                                 kmerTotals(inputs, options.k, canonical));
  if (options.json) {
    printer.json();
  } else if (options.table == PangenomeTable::kSummary) {
    printer.summary();
  } else if (options.table == PangenomeTable::kHistogram) {
    printer.histogram();
  } else {
    printer.growth();
  }
  finishOutput();
}

}  // namespace kit
