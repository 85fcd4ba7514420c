// A file that appears under its name only when it is complete.

#ifndef PALVOR_KIT_OUTPUT_FILE_H_
#define PALVOR_KIT_OUTPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

// Ends the name of a file that is being written.
constexpr const char* kPartSuffix = ".part";

// Writes all of it to a descriptor. False, with the reason in errno, if that
// fails.
bool writeAll(int descriptor, std::string_view bytes);

// The file that a name leads to by symbolic links, such as /dev/stdout, which
// would be replaced themselves.
std::string behindLinks(const std::string& path);

class OutputFile {
 public:
  // Creates `path`.part, or with a tag, which tells apart those who write the
  // same file at once, `path`.TAG.part. All functions throw std::system_error,
  // which names the file and the system's reason. Throws FileError where a
  // device, a pipe, a socket or a folder has the name: the file would take its
  // place, or fail to when all is done.
  explicit OutputFile(const std::string& path, const std::string& tag = "");

  // Removes what was written, unless it was committed.
  ~OutputFile();

  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Has the room on the disk for so many bytes, and makes the file as long:
  // writing at any offset within can't fail for room then, where the file
  // system can promise that.
  void allocate(uint64_t bytes) const;

  // Appends bytes; buffered.
  void write(const void* bytes, size_t size);

  // Writes bytes at an offset, at once. Threads may do so side by side; a file
  // is either appended to or written so.
  void writeAt(uint64_t offset, const void* bytes, size_t size) const;

  // Writes the rest, closes the file and gives it its name.
  void commit();

 private:
  void flush();
  [[noreturn]] void fail(const char* what) const;

  std::string path_;
  std::string part_;
  int descriptor_ = -1;
  std::vector<char> buffer_;
};

}  // namespace kit

#endif  // PALVOR_KIT_OUTPUT_FILE_H_
