#include "kit/merge/range_pangenome.h"

#include <fmt/format.h>

#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/answers/order_tests.h"
#include "kit/standard_output.h"
#include "palvor/sink/batch_sink.h"

namespace kit {

RangePangenome::RangePangenome(const RangeMerger& merger,
                               const PangenomeChoice& choice,
                               const std::string& groups)
    : merger_(merger),
      choice_(choice),
      inputs_(merger.files().paths.strings, 0),
      genomes_(inputs_, groups),
      canonical_(isCanonical(inputs_, choice.canonical)),
      palindromes_(palindromesFor(inputs_, choice.k, canonical_)) {
  warnOfOneStrand(inputs_);
}

uint64_t RangePangenome::bytesOfCounts() const {
  const uint64_t lengths = choice_.k.max - choice_.k.min + 2;
  return sizeof(uint64_t) * lengths * genomes_.count();
}

uint64_t RangePangenome::bytesOfRange() const {
  return (canonical_ ? 3 : 2) * bytesOfCounts();
}

uint64_t RangePangenome::bytesOfAll(size_t ranges) const {
  // And once more as the result.
  return (canonical_ ? 3 : 2) * bytesOfCounts() +
         2 * sizeof(uint32_t) * genomes_.count() * ranges;
}

void RangePangenome::setRanges(size_t ranges) {
  counts_.emplace(inputs_, genomes_, choice_.k, palindromes_, ranges);
}

void RangePangenome::count(
    size_t range, const std::shared_ptr<const palvor::MergeRange>& slices,
    const MemoryShares& shares, const std::function<void(uint64_t)>& advance) {
  const std::string name = fmt::format("range {} of the merged order of {}",
                                       range, merger_.files().paths.arrays);
  OrderTests tests(inputs_.lengths(), name, name);
  RangeKmers kmers = counts_->begin();
  uint64_t untold = 0;
  palvor::BatchSink sink(
      [&](std::span<const Suffix> suffixes, std::span<const LcpEntry> entries) {
        tests.take(suffixes, entries);
        kmers.take(suffixes, entries);
        untold += suffixes.size();
        if (untold < (1 << 20)) return;
        advance(untold);
        untold = 0;
      });
  merger_.merge(slices, shares, sink);
  advance(untold);
  counts_->add(range, kmers, slices->entry);
}

void RangePangenome::write(OutputFile* file) {
  const KmerCounts counts = counts_->finish();
  if (counts_->suffixes() != inputs_.total()) {
    throw std::runtime_error(fmt::format(
        "{} suffixes were merged, but the inputs have {}: the suffix arrays "
        "are not those of the inputs",
        counts_->suffixes(), inputs_.total()));
  }
  std::vector<uint64_t> totals = kmerTotals(inputs_, choice_.k, canonical_);
  if (file == nullptr) {
    printPangenome(choice_, counts, std::move(totals), writeOutput);
    finishOutput();
    return;
  }
  printPangenome(
      choice_, counts, std::move(totals),
      [&](std::string_view text) { file->write(text.data(), text.size()); });
  file->commit();
}

}  // namespace kit
