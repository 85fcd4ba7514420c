// Every heap block of the merge is requested here, counted, and never freed.

#ifndef PALVOR_SUPPORT_MEMORY_H_
#define PALVOR_SUPPORT_MEMORY_H_

// A block of count * size bytes, zeroed, or of `size` bytes, not zeroed; null
// on failure. Both count the bytes asked for, whether or not they are had.
// Large blocks are aligned to huge pages, and huge pages are asked for.
void* Calloc(int count, int size);
void* Malloc(unsigned long size);

// Bytes requested so far. Never decreases.
long long MemUsed();

// Returns `block`, or, if it is null, ends the run with an error that names
// what the block was for and the bytes asked for.
void* orDie(void* block, long long bytes, const char* purpose);

// Tables of `count` elements (0 or more), zeroed or not; a failure ends the
// run as by `orDie`.
template <typename Element>
Element* zeroedTable(int count, const char* purpose) {
  const int size = static_cast<int>(sizeof(Element));
  return static_cast<Element*>(orDie(
      Calloc(count, size), static_cast<long long>(count) * size, purpose));
}

template <typename Element>
Element* uninitializedTable(int count, const char* purpose) {
  const auto bytes = static_cast<unsigned long>(count) * sizeof(Element);
  return static_cast<Element*>(
      orDie(Malloc(bytes), static_cast<long long>(bytes), purpose));
}

#endif  // PALVOR_SUPPORT_MEMORY_H_
