// Records of a suffix array read here and there, without a stream. A small
// array is read at once.

#ifndef PALVOR_RANGE_ARRAY_READER_H_
#define PALVOR_RANGE_ARRAY_READER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "palvor/format/suffix.h"
#include "palvor/io/files.h"
#include "palvor/stream/stream_files.h"
#include "palvor/text/collection.h"

namespace palvor {

class ArrayReader {
 public:
  // Opens stream k's array. Fails if it cannot be opened or examined, is no
  // regular file, or holds more records than a stream can.
  ArrayReader(const StreamFiles& files, int k);

  int64_t size() const { return size_; }  // records

  // Reads all records at once if they are not more than some thousands, for
  // those who will ask for many, and closes the file then.
  void hold();

  // The key of a record that is there, its prefix words. Nothing is tested.
  uint64_t keyAt(int64_t record) const;

  // The first record from `from` on whose key is not below `key`, by halving;
  // size() if there is none. In an array that is not in order it is some record
  // from `from` on.
  int64_t lowerBound(uint64_t key, int64_t from) const;

  // A record that is there, its input moved to the stream's origin. Fails if it
  // names an input or a position that the strings don't have.
  Suffix suffixAt(int64_t record, const Collection& text) const;

  // Reads records that are there, untested.
  void read(int64_t first, int64_t count, Suffix* to) const;

  // What suffixAt does to a record that was read.
  Suffix tested(Suffix suffix, int64_t record, const Collection& text) const;

 private:
  std::string path_;
  uint32_t origin_;
  File file_;
  int64_t size_ = 0;
  std::vector<Suffix> all_;  // if it is held
};

}  // namespace palvor

#endif  // PALVOR_RANGE_ARRAY_READER_H_
