#include "support/report.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

void say(const char* format, ...) {
  std::fputs("# ", stderr);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

void blame(const char* path, const char* reason) {
  say("%s: %s\n", path, reason);
}

void blame(const char* path) { blame(path, std::strerror(errno)); }

void die(const char* format, ...) {
  std::fputs("## ERROR: ", stderr);
  std::fflush(stderr);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::exit(1);
}
