// A file that cannot be used, and why.

#ifndef PALVOR_KIT_FILE_ERROR_H_
#define PALVOR_KIT_FILE_ERROR_H_

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace kit {

// Its text is "FILE: REASON".
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& file, const std::string& reason)
      : std::runtime_error(fmt::format("{}: {}", file, reason)),
        file_(file),
        reason_(reason) {}

  const std::string& file() const { return file_; }
  const std::string& reason() const { return reason_; }

 private:
  std::string file_;
  std::string reason_;
};

}  // namespace kit

#endif  // PALVOR_KIT_FILE_ERROR_H_
