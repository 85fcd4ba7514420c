#include "output/output_file.h"

#include <cerrno>

#include "support/files.h"
#include "support/report.h"

int createOutput(const char* path) {
  const int fd = FileOpen(path, 1);
  if (fd < 0) blame(path);
  return fd;
}

int writeOutput(int fd, const char* path, const void* buf, int nbytes) {
  if (nbytes == 0) return 0;
  errno = 0;
  const int written = FileWrite(fd, buf, nbytes);
  if (written == nbytes) return written;
  // A write that stops short leaves no reason behind.
  if (errno != 0) {
    blame(path);
  } else {
    blame(path, "written in part only");
  }
  return written;
}

int closeOutput(int fd, const char* path) {
  const int result = FileClose(fd);
  if (result < 0) blame(path);
  return result;
}
