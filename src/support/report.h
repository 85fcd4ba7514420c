// To speak and to die: everything the program says goes to standard error.

#ifndef PALVOR_SUPPORT_REPORT_H_
#define PALVOR_SUPPORT_REPORT_H_

// Writes "# " and the formatted message, which brings its own line end.
// Knows nothing of -q: whoever speaks asks first.
[[gnu::format(printf, 1, 2)]] void say(const char* format, ...);

// Writes "# ", the path, and in words what is wrong with the file: what an
// error that follows leaves unsaid. The second form gives the reason of the
// system call that failed last (errno).
void blame(const char* path, const char* reason);
void blame(const char* path);

// Writes "## ERROR: ", flushes, writes the formatted message, which brings its
// own line end, and ends the process with status 1.
[[noreturn, gnu::format(printf, 1, 2)]] void die(const char* format, ...);

#endif  // PALVOR_SUPPORT_REPORT_H_
