// The comparisons that a walk of the list (palvor/order/lcp_list.h) makes on
// its way to a place, counted without making them.
//
// Among the suffixes before the new one, let `common` be what each shares with
// it: the least of the stored lengths behind it, and of what the last one
// shares. A walk compares a suffix whose stored length is not above that; the
// stored length is then what was known, and `common` what is found.

#ifndef PALVOR_ORDER_WALK_COST_H_
#define PALVOR_ORDER_WALK_COST_H_

#include "palvor/order/cost.h"
#include "palvor/order/key_blocks.h"
#include "palvor/simd/target.h"

namespace palvor {

// Adds the comparison of a suffix that is `bits` long with the one at an index
// of a block: `known` bits were known, `common` are found.
void addComparison(Cost& cost, const KeyBlocks::Block& block, int index,
                   int bits, int known, int common);

// Adds the comparisons with the suffixes before a place, the last of which
// shares `common` bits with the new suffix, whose length is `bits`.
using WalkCost = void (*)(Cost& cost, const KeyBlocks& blocks,
                          const Place& place, int bits, int common);

// The version for this processor.
WalkCost walkCost(Processor processor);

}  // namespace palvor

#endif  // PALVOR_ORDER_WALK_COST_H_
