// The slices of a range on a local disk, so that a merge reads nothing else
// over the network while it goes on.

#ifndef PALVOR_KIT_MERGE_STAGED_SLICES_H_
#define PALVOR_KIT_MERGE_STAGED_SLICES_H_

#include <string>

#include "kit/merge/range_merger.h"

namespace kit {

class StagedSlices {
 public:
  // Copies the slices of a range (and of their LCP files if `lcps`) to
  // <folder>/<name>.ST/, and changes the range to be one of these. Throws
  // std::exception.
  StagedSlices(const std::string& folder, const std::string& name,
               const RangeMerger& merger, palvor::MergeRange& range, bool lcps);

  // Removes the copies.
  ~StagedSlices();
  StagedSlices(const StagedSlices&) = delete;
  StagedSlices& operator=(const StagedSlices&) = delete;

  // Where the suffix arrays are read now.
  const palvor::DataPlace& place() const { return place_; }

 private:
  palvor::DataPlace place_;
  std::string path_;  // of the folder with the copies
};

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_STAGED_SLICES_H_
