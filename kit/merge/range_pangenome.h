// K-mers counted while ranges are merged, so that the merged order need not be
// written.

#ifndef PALVOR_KIT_MERGE_RANGE_PANGENOME_H_
#define PALVOR_KIT_MERGE_RANGE_PANGENOME_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "kit/answers/genomes.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/pangenome_table.h"
#include "kit/answers/range_kmers.h"
#include "kit/merge/range_merger.h"
#include "kit/output_file.h"

namespace kit {

class RangePangenome {
 public:
  // Reads the tables of inputs and groups, and looks for palindromes. All
  // functions throw std::exception. The merger must outlive this.
  //   choice  with a k (testChoice)
  //   groups  table of genomes; empty: each file is a genome
  RangePangenome(const RangeMerger& merger, const PangenomeChoice& choice,
                 const std::string& groups);

  // Of memory that the counts take: for each range while it is merged, and for
  // all; in bytes.
  uint64_t bytesOfRange() const;
  uint64_t bytesOfAll(size_t ranges) const;

  // To be called before the ranges are counted.
  void setRanges(size_t ranges);

  // Merges and counts a range. Threads may do so side by side. `advance` is
  // told the suffixes that are done, now and then.
  void count(size_t range,
             const std::shared_ptr<const palvor::MergeRange>& slices,
             const MemoryShares& shares,
             const std::function<void(uint64_t)>& advance);

  // Puts the ranges together and writes the table to a file, or for null to
  // standard output.
  void write(OutputFile* file);

 private:
  uint64_t bytesOfCounts() const;

  const RangeMerger& merger_;
  PangenomeChoice choice_;
  MergedInputs inputs_;
  Genomes genomes_;
  bool canonical_;
  std::shared_ptr<const Palindromes> palindromes_;
  std::optional<RangeCounts> counts_;
};

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_RANGE_PANGENOME_H_
