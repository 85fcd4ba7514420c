#include "support/program.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

namespace {

// Everything written to a descriptor.
std::string drained(int fd) {
  std::string text;
  lseek(fd, 0, SEEK_SET);
  char buffer[4096];
  for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<size_t>(got));
  }
  close(fd);
  return text;
}

void setLimit(__rlimit_resource_t resource, rlim_t soft, rlim_t hard) {
  const struct rlimit limit = {soft, hard};
  if (setrlimit(resource, &limit) != 0) _exit(126);
}

}  // namespace

Outcome runPalvor(const std::vector<std::string>& arguments,
                  const Limits& limits) {
  std::string program = programPath();
  std::vector<std::string> texts = arguments;
  std::vector<char*> argv = {program.data()};
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);

  const int out = memfd_create("out", MFD_CLOEXEC);
  const int err = memfd_create("err", MFD_CLOEXEC);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) {
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (limits.files) {
      setLimit(RLIMIT_NOFILE, *limits.files,
               limits.hardFiles.value_or(*limits.files));
    }
    if (limits.memory) setLimit(RLIMIT_AS, *limits.memory, *limits.memory);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          drained(out), drained(err)};
}

std::string programPath() { return PALVOR_PROGRAM; }

bool addressSpaceIsNeeded() {
#ifdef __SANITIZE_ADDRESS__
  return true;
#else
  return false;
#endif
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
