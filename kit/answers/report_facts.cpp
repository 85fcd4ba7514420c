#include "kit/answers/report_facts.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "kit/answers/likeness.h"
#include "kit/answers/neighbour_joining.h"
#include "kit/answers/pangenome_statistics.h"
#include "kit/answers/report_page.h"

namespace kit {
namespace {

constexpr double kQuorums[] = {1.0, 0.95};
constexpr uint32_t kMostPoints = 100;  // of a curve

// What is in each genome, on the forward strands.
struct GenomeFacts {
  std::set<std::pair<std::string, std::string>> records;  // file, name
  uint64_t characters = 0;
};

std::vector<GenomeFacts> countGenomes(const ReportFacts& facts) {
  std::vector<GenomeFacts> counted(facts.genomes.count());
  for (uint32_t i = 0; i < facts.inputs.count(); i++) {
    if (facts.inputs.forwardOf(i) != i) continue;
    GenomeFacts& genome = counted[facts.genomes.of(i)];
    const InputOrigin& origin = facts.inputs.origin(i);
    genome.records.emplace(origin.file, origin.sequence);
    genome.characters += facts.inputs.length(i);
  }
  return counted;
}

// From 1 to all, evenly, as many as a curve needs.
std::vector<uint32_t> pointsOf(uint32_t genomes) {
  std::vector<uint32_t> points;
  const uint32_t count = std::min(genomes, kMostPoints);
  for (uint64_t i = 0; i < count; i++) {
    points.push_back(count == 1 ? 1
                                : static_cast<uint32_t>(1 + i * (genomes - 1) /
                                                                (count - 1)));
  }
  return points;
}

Json genomesOf(const ReportFacts& facts) {
  const std::vector<GenomeFacts> counted = countGenomes(facts);
  Json genomes = Json::array();
  for (uint32_t g = 0; g < facts.genomes.count(); g++) {
    Json genome = {{"name", facts.genomes.name(g)},
                   {"group", facts.genomes.group(g)},
                   {"records", counted[g].records.size()},
                   {"characters", counted[g].characters}};
    if (facts.shared) genome["kmers"] = (*facts.shared)(g, g);
    genomes.push_back(std::move(genome));
  }
  return genomes;
}

// Numbers with as many digits as can be seen.
Json rounded(const std::vector<double>& numbers) {
  Json result = Json::array();
  for (const double number : numbers) {
    result.push_back(std::stod(fmt::format("{:.7g}", number)));
  }
  return result;
}

Json kmersOf(const ReportFacts& facts, const std::vector<uint32_t>& points) {
  const KmerCounts& counts = facts.kmers;
  const uint32_t genomes = counts.genomes();
  const ExpectedCounts growth(genomes, std::nullopt, points);
  std::vector<ExpectedCounts> cores;
  for (const double quorum : kQuorums) {
    cores.emplace_back(genomes, quorum, points);
  }
  const std::vector<uint64_t> totals =
      kmerTotals(facts.inputs, counts.k(), facts.canonical);
  Json rows = Json::array();
  for (uint32_t k = counts.k().min; k <= counts.k().max; k++) {
    const std::vector<double> curve = growth.of(counts.of(k));
    Json row = {{"k", k},
                {"total", totals[k - counts.k().min]},
                {"histogram", counts.of(k)},
                {"growth", rounded(curve)}};
    row["cores"] = Json::array();
    for (const ExpectedCounts& core : cores) {
      row["cores"].push_back(rounded(core.of(counts.of(k))));
    }
    // Of a curve with a point for each genome, as palvor-kit pangenome.
    const auto alpha =
        points.size() == genomes ? heapsAlpha(curve) : std::nullopt;
    row["alpha"] = alpha ? Json(*alpha) : Json();
    rows.push_back(std::move(row));
  }
  return rows;
}

Json distancesOf(const ReportFacts& facts) {
  if (!facts.shared) return {};
  const GenomeMatrix<double> distances =
      mashDistances(*facts.shared, facts.distanceK);
  std::vector<std::string> numbers;
  Json matrix = Json::array();
  for (uint32_t a = 0; a < distances.genomes(); a++) {
    numbers.push_back(std::to_string(a));
    std::vector<double> row;
    for (uint32_t b = 0; b < distances.genomes(); b++) {
      row.push_back(distances(a, b));
    }
    matrix.push_back(rounded(row));
  }
  return {{"k", facts.distanceK},
          {"matrix", matrix},
          {"tree", neighbourJoining(distances, numbers)}};
}

Json lcpsOf(const LcpHistogram& lcps) {
  Json bins = Json::array();
  for (const LcpHistogram::Bin& bin : lcps.bins()) {
    bins.push_back({{"from", bin.from}, {"pairs", bin.pairs}});
  }
  return {{"mean", lcps.mean()}, {"longest", lcps.longest()}, {"bins", bins}};
}

// The distance of the genome that is nearest to one, of several.
double nearest(const ReportFacts& facts, uint32_t genome) {
  double least = std::numeric_limits<double>::infinity();
  for (uint32_t other = 0; other < facts.genomes.count(); other++) {
    if (other == genome) continue;
    least = std::min(
        least, likenessOf(*facts.shared, genome, other, facts.distanceK).mash);
  }
  return least;
}

}  // namespace

Json pageFacts(const ReportFacts& facts) {
  const std::vector<uint32_t> points = pointsOf(facts.genomes.count());
  Json page = {{"name", facts.name},
               {"strands", facts.inputs.bothStrands() ? 2 : 1},
               {"inputs", facts.inputs.count()},
               {"suffixes", facts.inputs.total()},
               {"canonical", facts.canonical}};
  page["genomes"] = genomesOf(facts);
  page["chosen"] = points;
  page["quorums"] = kQuorums;
  page["k"] = kmersOf(facts, points);
  page["distances"] = distancesOf(facts);
  page["lcp"] = lcpsOf(facts.lcps);
  page["run"] = Json::array();
  for (const RunFigure& figure : facts.run) {
    page["run"].push_back({{"name", figure.name},
                           {"value", figure.value},
                           {"unit", figure.unit}});
  }
  return page;
}

Json multiqcFacts(const ReportFacts& facts) {
  Json headers;
  headers["characters"] = {{"title", "Characters"},
                           {"description", "of the forward strands"},
                           {"format", "{:,.0f}"}};
  headers["records"] = {{"title", "Records"}, {"format", "{:,.0f}"}};
  if (facts.shared) {
    headers["kmers"] = {{"title", fmt::format("{}-mers", facts.distanceK)},
                        {"description", "different ones"},
                        {"format", "{:,.0f}"}};
    headers["nearest"] = {
        {"title", "Nearest"},
        {"description", "Mash distance of the nearest genome"},
        {"format", "{:,.5f}"},
        {"min", 0}};
  }
  const std::vector<GenomeFacts> counted = countGenomes(facts);
  Json data = Json::object();
  for (uint32_t g = 0; g < facts.genomes.count(); g++) {
    Json row = {{"characters", counted[g].characters},
                {"records", counted[g].records.size()}};
    if (facts.shared) {
      row["kmers"] = (*facts.shared)(g, g);
      if (facts.genomes.count() > 1) row["nearest"] = nearest(facts, g);
    }
    // MultiQC puts names into its page as they are.
    data[escapedForHtml(facts.genomes.name(g))] = std::move(row);
  }
  return {
      {"id", "palvor_genomes"},
      {"section_name", "palvor: genomes"},
      {"description", escapedForHtml(fmt::format(
                          "The genomes of {}, merged by palvor.", facts.name))},
      {"plot_type", "table"},
      {"pconfig", {{"id", "palvor_genomes_table"}, {"title", "palvor"}}},
      {"headers", headers},
      {"data", data}};
}

}  // namespace kit
