#include "kit/standard_output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "kit/file_error.h"

namespace kit {
namespace {

[[noreturn]] void fail() {
  const int reason = errno;
  throw FileError("can't write to standard output", std::strerror(reason));
}

}  // namespace

void writeOutput(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) fail();
}

void finishOutput() {
  errno = EIO;  // for an earlier failure that nobody looked at
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) fail();
}

}  // namespace kit
