// Timed file input and output.
//
// Thin functions over the system calls. None retries, reports or ends the
// process: each returns the call's result, and the caller compares it with
// what it asked for and reports in its own words. What reads and writes take
// in wall-clock time is summed, in milliseconds.

#ifndef PALVOR_SUPPORT_FILES_H_
#define PALVOR_SUPPORT_FILES_H_

// Whether `path` is a pipe, a device or a socket, which may keep a reader
// waiting or never end. Sets errno if so.
bool IsStream(const char* path);

// Opens `path` read-only (mode 0), or for writing (any other mode): created if
// missing, with permissions 0644, and emptied. Returns the descriptor, or a
// negative value on failure.
int FileOpen(const char* path, int mode);

// Opens `path` read-only, unless IsStream.
int InputOpen(const char* path);

// Closes a descriptor; negative on failure.
int FileClose(int fd);

// Read up to `nbytes` bytes at a byte offset, or at the descriptor's position.
// Return the bytes read, 0 at the end of the file, negative on failure.
int FileRead(int fd, void* buf, int nbytes, long long offset);
int FileRead(int fd, void* buf, int nbytes, int offset);
int FileRead(int fd, void* buf, int nbytes);

// Writes `nbytes` bytes in pieces of at most 4 MiB. Returns the sum of the
// pieces' results, which is `nbytes` only if all went well: a failed piece
// counts as -1, a short one is not continued.
int FileWrite(int fd, const void* buf, int nbytes);

// Writes `nbytes` bytes in one call and returns its result.
long long BigFileWrite(int fd, const void* buf, unsigned long nbytes);

// Size in bytes, negative on failure. The descriptor is left at offset 0.
long long FileSize(const char* path);
long long FileSize(int fd);

// Examines a file: 0, or negative on failure.
int FileStat(const char* path);

// Milliseconds spent in the FileRead functions, and in the writing ones.
int ReadTime();
int WriteTime();

#endif  // PALVOR_SUPPORT_FILES_H_
