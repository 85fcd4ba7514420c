// The layouts of palvor's records: all that the kit shares with the merge, so
// that a mistake of the one is none of the other's.

#ifndef PALVOR_KIT_RECORDS_H_
#define PALVOR_KIT_RECORDS_H_

#include "output/divider.h"
#include "output/tree_node.h"
#include "sources/lcp_entry.h"
#include "sources/suffix.h"

#endif  // PALVOR_KIT_RECORDS_H_
