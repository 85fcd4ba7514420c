#include "support/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "support/clocks.h"

namespace {

constexpr int kWriteChunk = 4 << 20;  // bytes

// The most that one read brings on Linux, in bytes: a read that stops just
// there has not met the end of the file.
constexpr int kReadLimit = 0x7ffff000;

int readtime = 0;     // milliseconds spent in reads
int writetime = 0;    // milliseconds spent in writes
struct stat ss = {};  // the file examined last

// Adds the wall-clock time between its making and its end to a counter.
class Timed {
 public:
  explicit Timed(int* counter) : counter_(counter), start_(rclock()) {}
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;
  ~Timed() { *counter_ += elapsed(start_, rclock()); }

 private:
  int* counter_;
  int start_;
};

// Makes `call` (where to, how many bytes, how many before them) once, and once
// more if only the system's limit stopped it.
template <typename Call>
int timedRead(void* buf, int nbytes, Call call) {
  const Timed timed(&readtime);
  char* to = static_cast<char*>(buf);
  const ssize_t got = call(to, static_cast<size_t>(nbytes), 0);
  if (got != kReadLimit || nbytes <= kReadLimit) return static_cast<int>(got);
  const ssize_t rest =
      call(to + got, static_cast<size_t>(nbytes - kReadLimit), kReadLimit);
  return static_cast<int>(rest < 0 ? rest : got + rest);
}

}  // namespace

bool IsStream(const char* path) {
  struct stat status = {};
  if (stat(path, &status) != 0) return false;  // opening it says why
  if (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) return false;
  errno = ESPIPE;
  return true;
}

int FileOpen(const char* path, int mode) {
  if (mode == 0) return open(path, O_RDONLY);
  return open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
}

int InputOpen(const char* path) {
  return IsStream(path) ? -1 : FileOpen(path, 0);
}

int FileClose(int fd) { return close(fd); }

int FileRead(int fd, void* buf, int nbytes, long long offset) {
  return timedRead(buf, nbytes, [&](char* to, size_t size, int done) {
    return pread(fd, to, size, offset + done);
  });
}

int FileRead(int fd, void* buf, int nbytes, int offset) {
  return FileRead(fd, buf, nbytes, static_cast<long long>(offset));
}

int FileRead(int fd, void* buf, int nbytes) {
  return timedRead(buf, nbytes, [&](char* to, size_t size, int) {
    return read(fd, to, size);
  });
}

int FileWrite(int fd, const void* buf, int nbytes) {
  const Timed timed(&writetime);
  const char* next = static_cast<const char*>(buf);
  ssize_t total = 0;
  while (nbytes > kWriteChunk) {
    total += write(fd, next, kWriteChunk);
    next += kWriteChunk;
    nbytes -= kWriteChunk;
  }
  total += write(fd, next, static_cast<size_t>(nbytes));
  return static_cast<int>(total);
}

long long BigFileWrite(int fd, const void* buf, unsigned long nbytes) {
  const Timed timed(&writetime);
  return write(fd, buf, nbytes);
}

long long FileSize(const char* path) {
  const int result = stat(path, &ss);
  return result < 0 ? result : static_cast<long long>(ss.st_size);
}

long long FileSize(int fd) {
  const off_t end = lseek(fd, 0, SEEK_END);
  lseek(fd, 0, SEEK_SET);
  return end;
}

int FileStat(const char* path) { return stat(path, &ss); }

int ReadTime() { return readtime; }

int WriteTime() { return writetime; }
