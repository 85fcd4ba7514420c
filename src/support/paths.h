// The one formatter that builds every path.

#ifndef PALVOR_SUPPORT_PATHS_H_
#define PALVOR_SUPPORT_PATHS_H_

// Formats a path into the `size` bytes of `out`. A path that does not fit, its
// ending NUL included, ends the run with an error that shows the whole path: a
// shortened path would name another file.
[[gnu::format(printf, 3, 4)]] void formatPath(char* out, int size,
                                              const char* format, ...);

#endif  // PALVOR_SUPPORT_PATHS_H_
