// The bytes of a file as its user sees them: decompressed where the file is
// compressed, and unchanged where it is not.
//
// gzip (and so bgzf), bzip2, xz and zstd are recognized by their first bytes,
// whatever the file is called. A file made of several compressed streams, one
// after the other, reads as their contents joined; zeros after a gzip or xz
// stream are passed over. Checksums are verified.

#ifndef PALVOR_KIT_SEQUENCES_BYTE_SOURCE_H_
#define PALVOR_KIT_SEQUENCES_BYTE_SOURCE_H_

#include <cstddef>
#include <memory>
#include <string>

namespace kit {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  // Writes up to `capacity` bytes (at least 1) to `buffer` and returns their
  // number; 0 means the end, and only the end.
  // Throws std::runtime_error, which names the file, when it can't be read,
  // when compressed data are damaged or stop early, and when something that is
  // not compressed follows them.
  virtual size_t read(char* buffer, size_t capacity) = 0;

  // Bytes of the file, as it is stored, that were used so far, in blocks.
  virtual size_t storedBytes() const = 0;

  // Bytes that are still to be read, about; 0 if that is not known.
  virtual size_t bytesAhead() const { return 0; }

 protected:
  ByteSource() = default;
};

// Opens a file, or standard input for "-".
// Throws std::runtime_error, which names the file, when it can't be opened.
std::unique_ptr<ByteSource> openByteSource(const std::string& path);

}  // namespace kit

#endif  // PALVOR_KIT_SEQUENCES_BYTE_SOURCE_H_
