#include "support/paths.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "support/report.h"

void formatPath(char* out, int size, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length =
      std::vsnprintf(out, static_cast<size_t>(size), format, arguments);
  va_end(arguments);
  if (length < 0) die("cannot form a path from \"%s\"\n", format);
  if (length >= size) {
    std::string whole(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(whole.data(), whole.size(), format, again);
    die("path of %d characters is too long (at most %d): %s\n", length,
        size - 1, whole.c_str());
  }
  va_end(again);
}
