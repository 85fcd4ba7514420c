// A line on the terminal that shows how far a long command is.

#ifndef PALVOR_KIT_PROGRESS_H_
#define PALVOR_KIT_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace kit {

// Says nothing unless standard error is a terminal.
class Progress {
 public:
  Progress();
  ~Progress();  // takes the line away
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Replaces the line, a few times a second at most.
  void show(const std::string& text);

 private:
  bool terminal_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point last_{};
};

// ", 1:02:03 left", where `done` of `all` took from `begun` until now; nothing
// if that does not tell.
std::string timeLeft(std::chrono::steady_clock::time_point begun, uint64_t done,
                     uint64_t all);

}  // namespace kit

#endif  // PALVOR_KIT_PROGRESS_H_
