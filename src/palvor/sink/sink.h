// Where merged suffixes go.

#ifndef PALVOR_SINK_SINK_H_
#define PALVOR_SINK_SINK_H_

#include <cstdint>

#include "palvor/format/lcp_entry.h"
#include "palvor/format/suffix.h"

namespace palvor {

// What a merge tells its sink, and keeps up while it goes on.
struct MergeState {
  // Suffixes taken from the streams so far, those that are merged and those
  // that are listed. Within a batch that is put in, one is taken for each.
  int64_t taken = 0;
};

// Room for merged suffixes, in order.
struct SinkRoom {
  Suffix* suffixes;
  LcpEntry* entries;  // of each with the suffix before it in the merged order;
                      // null if they are not wanted
  int count;          // 1 or more
};

// The merge asks for room, fills a part of it, and puts that in, again and
// again, and then finishes. Everything may throw.
class Sink {
 public:
  Sink() = default;
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;
  virtual ~Sink() = default;

  // The merge begins. `state` stays valid until it ends.
  virtual void begin(const MergeState& state) = 0;

  // Room for suffixes that are there: whatever is full is emptied first.
  virtual SinkRoom room() = 0;

  // Takes the first `count` suffixes of the room that was given last.
  virtual void put(int count) = 0;

  // Whether the entry of the suffix to come is wanted, for an ordering that has
  // to compute it.
  virtual bool needsEntry() const { return false; }

  // The merge is done.
  virtual void finish() = 0;
};

}  // namespace palvor

#endif  // PALVOR_SINK_SINK_H_
