#include "support/program.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

int memoryFile(const std::string& text) {
  const int fd = memfd_create("text", MFD_CLOEXEC);
  const auto size = static_cast<ssize_t>(text.size());
  if (fd < 0 || write(fd, text.data(), text.size()) != size ||
      lseek(fd, 0, SEEK_SET) != 0) {
    throw std::runtime_error("no file in memory");
  }
  return fd;
}

// Everything written to a descriptor, which is then closed.
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

void setLimit(__rlimit_resource_t resource, std::optional<unsigned long> soft,
              std::optional<unsigned long> hard = {}) {
  if (!soft) return;
  const struct rlimit limit = {*soft, hard.value_or(*soft)};
  if (setrlimit(resource, &limit) != 0) _exit(126);
}

// Becomes the command, with its standard streams on three descriptors.
[[noreturn]] void execute(std::vector<std::string> command, int in, int out,
                          int err, const Setting& setting) {
  std::vector<char*> arguments;
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  // Ignored, the signal leaves the write to fail as on a full device.
  if (setting.fileSize) std::signal(SIGXFSZ, SIG_IGN);
  setLimit(RLIMIT_FSIZE, setting.fileSize);
  setLimit(RLIMIT_NOFILE, setting.files, setting.hardFiles);
  setLimit(RLIMIT_AS, setting.memory);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

// Runs the program that its path or name begins the command with.
Outcome run(const std::string& program, std::vector<std::string> command,
            const Setting& setting) {
  command.insert(command.begin(), program);
  command.insert(command.begin(), setting.under.begin(), setting.under.end());
  const int in = memoryFile(setting.input);
  const int out = setting.output.empty()
                      ? memoryFile("")
                      : open(setting.output.c_str(), O_WRONLY | O_CLOEXEC);
  const int err = memoryFile("");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) execute(command, in, out, err, setting);
  int status = 0;
  waitpid(child, &status, 0);
  close(in);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          drained(out), drained(err)};
}

}  // namespace

Outcome runPalvor(const std::vector<std::string>& arguments,
                  const Setting& setting) {
  return run(PALVOR_PROGRAM, arguments, setting);
}

Outcome runKit(const std::vector<std::string>& arguments,
               const Setting& setting) {
  return run(PALVOR_KIT_PROGRAM, arguments, setting);
}

Outcome runShell(const std::string& line) {
  const std::string folder =
      std::filesystem::path(PALVOR_PROGRAM).parent_path().string();
  return run("/bin/sh", {"-c", "PATH='" + folder + "':$PATH; " + line}, {});
}

std::string programPath() { return PALVOR_PROGRAM; }

bool addressSpaceIsNeeded() {
#ifdef __SANITIZE_ADDRESS__  // g++'s way of telling; clang has another
  return true;
#elif defined(__has_feature)
  return __has_feature(address_sanitizer);
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

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}
