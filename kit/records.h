// The layouts of palvor's records: all that the kit shares with the merge, so
// that a mistake of the one is none of the other's.

#ifndef PALVOR_KIT_RECORDS_H_
#define PALVOR_KIT_RECORDS_H_

#include "palvor/format/divider.h"
#include "palvor/format/lcp_entry.h"
#include "palvor/format/packing.h"
#include "palvor/format/suffix.h"
#include "palvor/format/tree_node.h"

namespace kit {

using palvor::DividerRecord;

using palvor::kLcpLimit;
using palvor::lcpBits;
using palvor::lcpCharacters;
using palvor::LcpEntry;
using palvor::lcpFirstbit;
using palvor::makeLcpEntry;

using palvor::inputNumber;
using palvor::prefixBits;
using palvor::Suffix;
using palvor::suffixFlags;

using palvor::hasNext;
using palvor::isLeaf;
using palvor::kLeafBit;
using palvor::kNextBit;
using palvor::leftChild;
using palvor::rightChild;
using palvor::TreeNode;

}  // namespace kit

#endif  // PALVOR_KIT_RECORDS_H_
