// palvor_fuzz: runs cases, each a file of any bytes, through palvor and
// palvor-kit in a process of its own, as if they were hostile files.
//
//   palvor_fuzz TARGET             one case on standard input, in this process:
//                                  for a fuzzer, or under a debugger
//   palvor_fuzz TARGET PATH...     each case, or all of a folder, in a process
//                                  of its own; exit 1 if one is a finding
//
// A finding is a signal (which is how the sanitizers' reports end), a status
// other than 0 and 1, more than kSeconds, or what watch.h says. A file whose
// name begins with "accepted" must end with 0, one with "refused" with 1.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "case_folder.h"
#include "fuzz_input.h"
#include "targets.h"
#include "watch.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned kSeconds = 30;  // for one case

// The name of a folder that only this process uses.
std::string newFolder() {
  const char* set = std::getenv("TMPDIR");
  std::string folder = set != nullptr           ? set
                       : fs::exists("/dev/shm") ? "/dev/shm"
                                                : "/tmp";
  folder += "/palvor_fuzz.XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    std::perror(folder.c_str());
    std::exit(2);
  }
  return folder + "/";
}

[[noreturn]] void runCase(Target target, const CaseFolder& folder,
                          const std::string& bytes) {
  folder.renew();
  FuzzInput input(bytes);
  const int status = target(input, folder);
  folder.remove();
  testTouched();
  // What the process would still do, the fuzzer would wait for each time.
  std::fflush(nullptr);
  _exit(status);
}

void discardOutput() {
  const int null = open("/dev/null", O_WRONLY);
  dup2(null, STDOUT_FILENO);
  dup2(null, STDERR_FILENO);
}

// Says what a case did if that is a finding, and then returns true.
bool isFinding(int status, const std::string& path) {
  const std::string name = fs::path(path).filename().string();
  std::string fault;
  if (WIFSIGNALED(status)) {
    const int number = WTERMSIG(status);
    fault = number == SIGALRM
                ? "more than " + std::to_string(kSeconds) + " seconds"
                : "signal " + std::to_string(number);
  } else if (WEXITSTATUS(status) > 1) {
    fault = "status " + std::to_string(WEXITSTATUS(status));
  } else if (name.starts_with("accepted") && WEXITSTATUS(status) != 0) {
    fault = "should be accepted";
  } else if (name.starts_with("refused") && WEXITSTATUS(status) == 0) {
    fault = "should be refused";
  }
  if (fault.empty()) return false;
  std::printf("%s: %s\n", path.c_str(), fault.c_str());
  return true;
}

// Runs a case in a process of its own.
bool replay(Target target, const CaseFolder& folder, const std::string& path,
            bool verbose) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    std::printf("%s: can't be read\n", path.c_str());
    return true;
  }
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    if (!verbose) discardOutput();
    alarm(kSeconds);
    runCase(target, folder, bytes);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    std::perror("fork");
    std::exit(2);
  }
  folder.remove();
  return isFinding(status, path);
}

// The files that the paths name, alone or by their folder.
std::set<std::string> filesOf(const std::vector<std::string>& paths) {
  std::set<std::string> files;
  for (const std::string& path : paths) {
    if (!fs::is_directory(path)) {
      files.insert(path);
      continue;
    }
    for (const auto& entry : fs::directory_iterator(path)) {
      files.insert(entry.path());
    }
  }
  return files;
}

int replayAll(Target target, const std::vector<std::string>& paths,
              bool verbose) {
  const CaseFolder folder(newFolder());
  int findings = 0;
  const std::set<std::string> files = filesOf(paths);
  for (const std::string& file : files) {
    if (replay(target, folder, file, verbose)) findings++;
  }
  std::printf("%zu cases, %d findings\n", files.size(), findings);
  return findings == 0 && !files.empty() ? 0 : 1;
}

int usage() {
  std::fprintf(stderr,
               "palvor_fuzz TARGET < CASE\n"
               "palvor_fuzz [-v] TARGET FILE|FOLDER...\n"
               "targets: array tree check view prepare answer\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool verbose = !words.empty() && words[0] == "-v";
  if (verbose) words.erase(words.begin());
  if (words.empty()) return usage();
  const Target target = findTarget(words[0]);
  if (target == nullptr) return usage();
  words.erase(words.begin());
  if (!words.empty()) return replayAll(target, words, verbose);

  const CaseFolder folder(newFolder());
#ifdef __AFL_HAVE_MANUAL_CONTROL
  __AFL_INIT();  // the fuzzer's processes fork from here, one for each case
#endif
  runCase(target, folder, {std::istreambuf_iterator<char>(std::cin), {}});
}
