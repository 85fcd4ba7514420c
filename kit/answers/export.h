// A merged order as other programs read it.

#ifndef PALVOR_KIT_ANSWERS_EXPORT_H_
#define PALVOR_KIT_ANSWERS_EXPORT_H_

#include "kit/answers/merged_options.h"

namespace kit {

// The Burrows-Wheeler transform, the suffix array, its longest common prefixes,
// or the documents, which are the inputs (suffix_rows.h).
enum class ExportedArray { kBwt, kSa, kLcp, kDa };

struct ExportOptions {
  MergedOptions merged;
  ExportedArray array = ExportedArray::kBwt;
  int width = 8;         // bytes of a number: 4, 5 or 8
  bool npy = false;      // with a header for numpy
  bool newline = false;  // for terminators, instead of $
};

// Writes the array to standard output. Throws std::exception, which names the
// file, if the order is not there, unfinished or wrong, and if a number may not
// fit.
void exportArray(const ExportOptions& options);

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_EXPORT_H_
