// The three lengths files.
//
// Each is an array of unsigned 32-bit integers, little-endian, one per entry
// and nothing else:
//   .stlengths   one entry per input: its length, in characters
//   .stblengths  one entry per input: its packed string's length, in bits
//   .stplengths  one entry per partition: the number of inputs it covers

#ifndef PALVOR_RUN_LENGTHS_H_
#define PALVOR_RUN_LENGTHS_H_

// Fills each table that is not null from its file, with up to `n` entries, and
// skips the files of the others. The first two have room for `n` entries and
// must get as many; the last has room for `nparts` (run/values.h), its file
// may hold fewer than `n`, and the entries that it does not reach stay as they
// are. Entries are taken as stored. A file that cannot be opened, or is too
// short, ends the run.
void readPartitionInfo(const char* lengthsPath, const char* blengthsPath,
                       const char* plengthsPath, unsigned* lengthsTable,
                       unsigned* blengthsTable, unsigned* plengthsTable, int n);

#endif  // PALVOR_RUN_LENGTHS_H_
