// A file of sequences as it is stored, in blocks, with a look at its first
// bytes.

#ifndef PALVOR_KIT_SEQUENCES_SOURCE_FILE_H_
#define PALVOR_KIT_SEQUENCES_SOURCE_FILE_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

// A path as messages name it: "-" is "standard input".
std::string sourceName(const std::string& path);

class SourceFile {
 public:
  // Opens a file, or standard input for "-". Throws std::system_error, which
  // names the file; so does whatever reads.
  explicit SourceFile(const std::string& path);
  ~SourceFile();
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  // Whether the file begins with these bytes, or with one of these characters;
  // to be asked before anything is handed out.
  bool beginsWith(std::span<const unsigned char> magic);
  bool beginsWithOneOf(std::string_view characters);

  // The next bytes of the file, valid until the next call; none at its end.
  std::span<char> nextBlock();

  // Writes the next bytes of the file to `buffer` instead; returns their
  // number, 0 at its end.
  size_t read(char* buffer, size_t capacity);

  // Bytes that were handed out so far.
  size_t handedOut() const { return handedOut_; }

  // The size of a regular file in bytes, else 0.
  size_t size() const;

  // Throws std::runtime_error, which names the file.
  [[noreturn]] void fail(const std::string& reason) const;

 private:
  size_t readMore();
  size_t readTo(char* buffer, size_t capacity) const;

  std::string path_;
  int descriptor_ = -1;
  std::vector<char> block_;
  size_t filled_ = 0;  // bytes of the block read and not yet handed out
  size_t handedOut_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_SEQUENCES_SOURCE_FILE_H_
