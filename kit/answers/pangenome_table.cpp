#include "kit/answers/pangenome_table.h"

#include <fmt/format.h>

#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

#include "kit/answers/pangenome_statistics.h"
#include "kit/json.h"

namespace kit {
namespace {

std::string quorumName(double quorum) { return fmt::format("core_{}", quorum); }

// Prints the answers, k by k.
class PangenomePrinter {
 public:
  PangenomePrinter(const PangenomeChoice& choice, const KmerCounts& counts,
                   std::vector<uint64_t> totals, const WriteText& write)
      : choice_(choice),
        counts_(counts),
        totals_(std::move(totals)),
        write_(write),
        growth_(counts.genomes(), std::nullopt) {
    for (const double quorum : choice.quorums) {
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
        object[quorumName(choice_.quorums[q])] = cores_[q].of(counts_.of(k));
      }
      if (const auto alpha = alphaOf(k)) object["alpha"] = *alpha;
      const HillNumbers hill = hillNumbers(counts_.of(k));
      object["hill_1"] = hill.order1;
      object["hill_2"] = hill.order2;
      write_(jsonLine(object));
    });
  }

  void summary() const {
    std::vector<std::string> columns = {"k", "total", "distinct", "unique"};
    addQuorums(columns);
    columns.insert(columns.end(), {"alpha", "hill_1", "hill_2"});
    TablePrinter printer(columns, false, write_);
    eachK([&](uint32_t k) {
      const auto row = counts_.of(k);
      std::vector<Cell> cells = {uint64_t{k}, total(k), distinct(k), row[0]};
      for (const double quorum : choice_.quorums) {
        const uint32_t wanted = quorumOf(quorum, counts_.genomes());
        cells.emplace_back(std::accumulate(row.begin() + (wanted - 1),
                                           row.end(), uint64_t{0}));
      }
      const auto alpha = alphaOf(k);
      cells.emplace_back();
      if (alpha) cells.back() = *alpha;
      const HillNumbers hill = hillNumbers(row);
      cells.emplace_back(hill.order1);
      cells.emplace_back(hill.order2);
      printer.row(cells);
    });
  }

  void histogram() const {
    TablePrinter printer({"k", "genomes", "kmers"}, false, write_);
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
    TablePrinter printer(columns, false, write_);
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
    for (uint32_t k = choice_.k.min; k <= choice_.k.max; k++) print(k);
  }

  void addQuorums(std::vector<std::string>& columns) const {
    for (const double quorum : choice_.quorums) {
      columns.push_back(quorumName(quorum));
    }
  }

  uint64_t total(uint32_t k) const { return totals_[k - choice_.k.min]; }

  uint64_t distinct(uint32_t k) const {
    const auto row = counts_.of(k);
    return std::accumulate(row.begin(), row.end(), uint64_t{0});
  }

  std::optional<double> alphaOf(uint32_t k) const {
    return heapsAlpha(growth_.of(counts_.of(k)));
  }

  const PangenomeChoice& choice_;
  const KmerCounts& counts_;
  std::vector<uint64_t> totals_;
  const WriteText& write_;
  ExpectedCounts growth_;
  std::vector<ExpectedCounts> cores_;
};

}  // namespace

void testChoice(const PangenomeChoice& choice) {
  if (choice.k.min <= choice.k.max) return;
  throw std::runtime_error(fmt::format("--min-k {} is more than --max-k {}",
                                       choice.k.min, choice.k.max));
}

void printPangenome(const PangenomeChoice& choice, const KmerCounts& counts,
                    std::vector<uint64_t> totals, const WriteText& write) {
  const PangenomePrinter printer(choice, counts, std::move(totals), write);
  if (choice.json) {
    printer.json();
  } else if (choice.table == PangenomeTable::kSummary) {
    printer.summary();
  } else if (choice.table == PangenomeTable::kHistogram) {
    printer.histogram();
  } else {
    printer.growth();
  }
}

}  // namespace kit
