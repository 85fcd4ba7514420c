#include "kit/answers/report.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "kit/answers/genomes.h"
#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/report_facts.h"
#include "kit/answers/report_page.h"
#include "kit/answers/shared_kmers.h"
#include "kit/output_file.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

void commitText(OutputFile& file, const std::string& text) {
  file.write(text.data(), text.size());
  file.commit();
}

// "x.report.html" gives "x.report_mqc.json", as MultiQC looks for.
std::string multiqcPath(const std::string& page) {
  return std::filesystem::path(page).replace_extension().string() + "_mqc.json";
}

}  // namespace

void report(const ReportOptions& options) {
  if (options.k.min > options.k.max) {
    throw std::runtime_error(fmt::format("--min-k {} is more than --max-k {}",
                                         options.k.min, options.k.max));
  }
  std::vector<RunFigure> run;
  if (!options.log.empty()) run = readRunLog(options.log);
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  const Genomes genomes(inputs, options.merged.groups);
  const MergedArray array(inputs, options.merged.mergedBase());
  warnOfOneStrand(inputs);

  const std::string page = options.page.empty()
                               ? options.merged.mergedBase() + ".report.html"
                               : options.page;
  const std::string multiqc = multiqcPath(behindLinks(page));
  // Begun now: that they cannot be written is not to be found out at the end.
  OutputFile pageFile(behindLinks(page)), multiqcFile(multiqc);

  const bool canonical = inputs.bothStrands();
  KmerSpectrum kmers(inputs, genomes, options.k,
                     palindromesFor(inputs, options.k, canonical));
  std::optional<SharedKmers> shared;
  if (genomes.count() <= kMostCompared) {
    shared.emplace(inputs, genomes, options.distanceK);
  }
  LcpHistogram lcps;
  array.pass("reporting", [&](std::span<const Suffix> suffixes,
                              std::span<const LcpEntry> entries) {
    kmers.take(suffixes, entries);
    if (shared) shared->take(suffixes, entries);
    lcps.take(entries);
  });
  ReportFacts facts = {.name = options.merged.prefix,
                       .inputs = inputs,
                       .genomes = genomes,
                       .canonical = canonical,
                       .kmers = kmers.finish().result(),
                       .lcps = lcps,
                       .distanceK = options.distanceK,
                       .shared = std::nullopt,
                       .run = std::move(run)};
  if (shared) facts.shared = shared->finish();

  commitText(pageFile, reportPage(pageFacts(facts)));
  commitText(multiqcFile, jsonLine(multiqcFacts(facts)));
  writeOutput(page + '\n' + multiqc + '\n');
  finishOutput();
}

}  // namespace kit
