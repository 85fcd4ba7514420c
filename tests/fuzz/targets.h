// What a case is run through: palvor or one command of palvor-kit, in this
// process.

#ifndef PALVOR_TESTS_FUZZ_TARGETS_H_
#define PALVOR_TESTS_FUZZ_TARGETS_H_

#include <string>

#include "case_folder.h"
#include "fuzz_input.h"

// A case begins with the bytes that choose options, and the rest is a data
// folder (case_folder.h), or for `prepare` one sequence file. Bits are counted
// from the least significant.
//
//   array    byte 0  -Z -U -H -f -z -q -X, and -l
//   tree     byte 0  -Z -U -H -f -z -q -X, and -R
//     both   byte 1  low four bits: the value of -n, high four: that of -M or
//                    -m, by the tables in targets.cpp
//            byte 2  -C, and in bits 1 and 2 the value of -N, 0 for none
//   check    byte 0  --all, --json, -z; bit 3: the merge below makes trees
//   view     byte 0  --json, --dot, --data, and whether --from and --count are
//                    given, in bytes 1 and 2
//   prepare  byte 0  --lcp, --zero-origin, --psa-per record; bits 3 and 4 the
//                    value of --ambiguous; bit 5: two files, of the same
//                    bytes; bit 6: the merge below makes trees
//
//   answer   byte 0  bits 0 to 2: pangenome, find, distance, shared, markers,
//                    export, report, merge --pangenome; bit 3: the table of
//                    inputs, which is made of x.stlengths, has both strands;
//                    bit 4: --json; bits 5 and 6: a variant
//            byte 1  a number, from which k and the like follow
//
// After a run that ends well, the others must agree with it:
//   array, tree  the output is that of the merge's input (merge_results.h)
//   check        the merge of a folder that is all right must end well, and
//                what it writes must be all right
//   prepare      the same of the folder that it made
//
// Returns the exit status. `folder` must have been renewed.
using Target = int (*)(FuzzInput& input, const CaseFolder& folder);

// Null if there is no such target.
Target findTarget(const std::string& name);

#endif  // PALVOR_TESTS_FUZZ_TARGETS_H_
