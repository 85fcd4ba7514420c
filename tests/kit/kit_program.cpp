#include "tests/kit/kit_program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/kit/temporary_folder.h"

namespace {

struct Streams {
  std::string in = "/dev/null", out = "/dev/null", err = "/dev/null";
};

void redirect(int descriptor, const std::string& path, int flags) {
  const int opened = open(path.c_str(), flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
}

pid_t start(const std::vector<std::string>& command, const Streams& streams,
            std::optional<unsigned long> fileSize) {
  const pid_t child = fork();
  if (child != 0) return child;
  redirect(STDIN_FILENO, streams.in, O_RDONLY);
  redirect(STDOUT_FILENO, streams.out, O_WRONLY | O_CREAT);
  redirect(STDERR_FILENO, streams.err, O_WRONLY | O_CREAT);
  if (fileSize) {
    // Ignored, the signal leaves the write to fail as on a full device.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {*fileSize, *fileSize};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  std::vector<char*> arguments;
  for (const std::string& word : command) {
    arguments.push_back(const_cast<char*>(word.c_str()));
  }
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

KitOutcome run(const std::vector<std::string>& command,
               const KitSetting& setting) {
  const TemporaryFolder folder;
  const bool captured = setting.output.empty();
  const pid_t child =
      start(command,
            {folder.write("in", setting.input),
             captured ? folder.write("out", "") : setting.output,
             folder.write("err", "")},
            setting.fileSize);
  int status = 0;
  if (waitpid(child, &status, 0) != child) abort();
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          captured ? folder.read("out") : "", folder.read("err")};
}

std::vector<std::string> kitCommand(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), PALVOR_KIT_PROGRAM);
  return arguments;
}

}  // namespace

KitOutcome runKit(const std::vector<std::string>& arguments,
                  const KitSetting& setting) {
  return run(kitCommand(arguments), setting);
}

pid_t startKit(const std::vector<std::string>& arguments) {
  return start(kitCommand(arguments), {}, {});
}

KitOutcome runShell(const std::string& line) {
  const std::string folder =
      std::filesystem::path(PALVOR_PROGRAM).parent_path().string();
  return run({"/bin/sh", "-c", "PATH='" + folder + "':$PATH; " + line}, {});
}

std::string lastLine(const std::string& text) {
  const std::string body = text.substr(0, text.find_last_not_of('\n') + 1);
  return body.substr(body.rfind('\n') + 1);
}
