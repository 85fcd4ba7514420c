#include "kit/progress.h"

#include <unistd.h>

#include <cstdio>

namespace kit {

Progress::Progress() : terminal_(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void Progress::show(const std::string& text) {
  using namespace std::chrono_literals;
  const auto now = std::chrono::steady_clock::now();
  if (!terminal_ || (shown_ && now - last_ < 200ms)) return;
  std::fprintf(stderr, "\r\033[K%s", text.c_str());
  shown_ = true;
  last_ = now;
}

}  // namespace kit
