#include "support/report.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

void say(const char* format, ...) {
  std::fputs("# ", stderr);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

void die(const char* format, ...) {
  std::fputs("## ERROR: ", stderr);
  std::fflush(stderr);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::exit(1);
}
