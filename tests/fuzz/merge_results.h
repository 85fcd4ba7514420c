// What must hold after a merge that ended well, however its input was forged.

#ifndef PALVOR_TESTS_FUZZ_MERGE_RESULTS_H_
#define PALVOR_TESTS_FUZZ_MERGE_RESULTS_H_

#include "case_folder.h"
#include "palvor/merge.h"

// Both need the options that the merge had, and its input files and output
// files (prefix x) in x.ST/. What does not hold is a finding (watch.h).

// The merged array holds each record of the streams once, and the LCP file, if
// wanted, as many entries.
void testMergedArray(const CaseFolder& folder,
                     const palvor::MergeOptions& options);

// Each tree is well formed and as its divider says, and the trees hold each
// suffix of the streams once.
void testMergedTrees(const CaseFolder& folder,
                     const palvor::MergeOptions& options);

#endif  // PALVOR_TESTS_FUZZ_MERGE_RESULTS_H_
