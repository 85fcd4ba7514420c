#include "kit/answers/run_log.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include "kit/file_error.h"
#include "kit/record_file.h"

namespace kit {
namespace {

constexpr uint64_t kMostBytes = 64 << 20;

// The number behind a mark in a line.
std::optional<double> numberBehind(const std::string& line,
                                   std::string_view mark) {
  const size_t at = line.find(mark);
  if (at == std::string::npos) return std::nullopt;
  const char* begin = line.c_str() + at + mark.size();
  if (*begin < '0' || *begin > '9') return std::nullopt;
  const double number = std::strtod(begin, nullptr);
  if (!std::isfinite(number)) return std::nullopt;
  return number;
}

// "1:02:03" or "2:03.5", as seconds.
std::optional<double> clockBehind(const std::string& line,
                                  std::string_view mark) {
  const size_t at = line.find(mark);
  if (at == std::string::npos) return std::nullopt;
  double seconds = 0;
  const char* next = line.c_str() + at + mark.size();
  for (;;) {
    if (*next < '0' || *next > '9') return std::nullopt;
    char* end = nullptr;
    seconds = 60 * seconds + std::strtod(next, &end);
    if (!std::isfinite(seconds)) return std::nullopt;
    if (*end != ':') return seconds;
    next = end + 1;
  }
}

struct Known {
  const char* line;  // that it begins with
  const char* mark;  // what is before the number
  const char* name;
  double unitsEach;  // what one of it is in the unit
  const char* unit;
};

constexpr Known kKnown[] = {
    {"# total length = ", "number of parts = ", "suffix arrays merged", 1, ""},
    {"# Merge done: ", "# Merge done: ", "suffixes merged", 1, ""},
    {"# Merge done: ", "tlcmp=", "places compared", 1, ""},
    {"# Merge done: ", "tncmp=", "comparisons of strings", 1, ""},
    {"# Palvor: ", "mem ", "memory asked for", 1, "bytes"},
    {"# Palvor: ", "real ", "wall time of the merge", 1e-3, "s"},
    {"# Palvor: ", "time ", "processor time of the merge", 1e-3, "s"},
    {"# Palvor: ", "r/w ", "time reading", 1e-3, "s"},
    {"\tUser time (seconds): ", "): ", "user time", 1, "s"},
    {"\tSystem time (seconds): ", "): ", "system time", 1, "s"},
    {"\tMaximum resident set size (kbytes): ", "): ", "peak memory", 1024,
     "bytes"},
};

constexpr const char* kElapsed =
    "\tElapsed (wall clock) time (h:mm:ss or m:ss): ";

void readLine(const std::string& line, std::vector<RunFigure>& figures) {
  for (const Known& known : kKnown) {
    if (!line.starts_with(known.line)) continue;
    if (const auto number = numberBehind(line, known.mark)) {
      figures.push_back({known.name, *number * known.unitsEach, known.unit});
    }
  }
  if (!line.starts_with(kElapsed)) return;
  if (const auto seconds = clockBehind(line, kElapsed)) {
    figures.push_back({"wall time", *seconds, "s"});
  }
}

}  // namespace

std::vector<RunFigure> readRunLog(const std::string& path) {
  const RecordFile<char> file(path);
  if (file.size() > kMostBytes) {
    throw FileError(path, fmt::format("{} bytes are too many for a log, at "
                                      "most {} are read",
                                      file.size(), kMostBytes));
  }
  const std::vector<char> bytes = file.read(0, kMostBytes);
  std::vector<RunFigure> figures;
  std::string line;
  for (const char c : bytes) {
    if (c != '\n') {
      line += c;
      continue;
    }
    readLine(line, figures);
    line.clear();
  }
  readLine(line, figures);
  if (figures.empty()) {
    throw FileError(path,
                    "no line of palvor or of GNU time -v tells of a run here");
  }
  return figures;
}

}  // namespace kit
