// A line that shows how far a long command is.

#ifndef PALVOR_KIT_PROGRESS_H_
#define PALVOR_KIT_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace kit {

struct ProgressStyle {
  std::string stage;  // comes first in each line, such as "stage 2 of 4, "
  std::chrono::milliseconds patience{0};    // before anything is shown
  std::chrono::milliseconds plainEvery{0};  // a whole line so often, where
                                            // there is no terminal; 0: none
  bool silent = false;
};

// Writes to standard error: a line that is replaced, if that is a terminal.
class Progress {
 public:
  explicit Progress(ProgressStyle style = {});
  ~Progress();  // takes the line away
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Replaces the line, a few times a second at most. The text is what is done,
  // and how far it is.
  void show(const std::string& text);

 private:
  ProgressStyle style_;
  bool terminal_;
  bool shown_ = false;
  const std::chrono::steady_clock::time_point begun_ =
      std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point last_ = begun_;
};

// "1:02:03", "4:05"
std::string clockTime(double seconds);

// ", 1:02:03 left", where `done` of `all` took from `begun` until now; nothing
// if that does not tell.
std::string timeLeft(std::chrono::steady_clock::time_point begun, uint64_t done,
                     uint64_t all);

}  // namespace kit

#endif  // PALVOR_KIT_PROGRESS_H_
