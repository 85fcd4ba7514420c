#include "faults/scenario.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <stdexcept>

namespace fs = std::filesystem;

void PrintTo(const Scenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

Ground::Ground(const Scenario& scenario) {
  folder_.write("a.fa",
                ">x\nGATTACAGATTACACATTACAGATTACAGGATTACAACCA\n>y\nGA\n");
  folder_.write("b.fa", ">z\nCATTACAGATTACANGATTA\n");
  if (runShell("gzip -n " + path("b.fa")).status != 0) {
    throw std::runtime_error("gzip failed");
  }
  for (const Command& command : scenario.before) {
    const Outcome outcome = run(command);
    if (outcome.status != 0) throw std::runtime_error(outcome.err);
  }
}

Outcome Ground::run(const Command& command, const Setting& setting) const {
  Command arguments(command.begin() + 1, command.end());
  for (std::string& word : arguments) {
    if (word.rfind("ROOT", 0) == 0) word.replace(0, 4, root());
  }
  return command[0] == "palvor" ? runPalvor(arguments, setting)
                                : runKit(arguments, setting);
}

std::string Ground::withoutRoot(std::string text) const {
  for (size_t at; (at = text.find(root())) != std::string::npos;) {
    text.replace(at, root().size(), "ROOT");
  }
  return text;
}

std::map<std::string, std::string> Ground::files() const {
  std::map<std::string, std::string> result;
  for (const auto& entry : fs::recursive_directory_iterator(root())) {
    if (!entry.is_regular_file()) continue;
    const std::string name = entry.path().string().substr(root().size());
    result[name] = withoutRoot(folder_.read(name));
  }
  return result;
}

std::vector<FileCalls> traceCalls(const Scenario& scenario) {
  const Ground ground(scenario);
  ground.run(scenario.command,
             {.under = {"strace", "-f", "-y", "-s", "4096", "-o",
                        ground.trace(), "-e", "trace=%file,%desc"}});
  std::ifstream trace(ground.trace());
  const std::regex pattern(
      "^[0-9]+ +([a-z0-9]+)\\((?:[0-9]+<|(?:AT[^,]*, )?\")" + ground.root() +
      "([^\">]+)");
  std::map<std::pair<std::string, std::string>, int> counts;
  for (std::string line; std::getline(trace, line);) {
    // 42  openat(AT_FDCWD</tmp>, "/tmp/palvor-Qy7/x.ST/x.stdiv", ...
    // 42  read(3</tmp/palvor-Qy7/x.ST/x_0.stbin>, "GATT", ...
    std::smatch call;
    if (std::regex_search(line, call, pattern)) counts[{call[1], call[2]}]++;
  }
  std::vector<FileCalls> calls;
  for (const auto& [key, count] : counts) {
    calls.push_back({key.first, key.second, count});
  }
  return calls;
}

Setting withFault(const Ground& ground, const FileCalls& calls,
                  const std::string& what, int n) {
  const std::string& call = calls.call;
  return {
      .under = {"strace", "-f", "-o", ground.trace(), "-P",
                ground.path(calls.file), "-e", "trace=" + call, "-e",
                "inject=" + call + ":" + what + ":when=" + std::to_string(n)}};
}
