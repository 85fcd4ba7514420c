#include "kit/progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <utility>

#include "kit/message.h"

namespace kit {
namespace {

constexpr std::chrono::milliseconds kBetween{200};  // lines on a terminal

}  // namespace

std::string clockTime(double seconds) {
  const auto whole = static_cast<long>(seconds);
  char text[32];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600,
                  whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
  }
  return text;
}

Progress::Progress(ProgressStyle style)
    : style_(std::move(style)), terminal_(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void Progress::show(const std::string& text) {
  const auto now = std::chrono::steady_clock::now();
  if (style_.silent || now - begun_ < style_.patience) return;
  if (!terminal_) {
    if (style_.plainEvery.count() == 0 || now - last_ < style_.plainEvery)
      return;
    say(style_.stage + text);
    last_ = now;
    return;
  }
  if (shown_ && now - last_ < kBetween) return;
  std::fprintf(stderr, "\r\033[Kpalvor-kit: %s%s", style_.stage.c_str(),
               text.c_str());
  shown_ = true;
  last_ = now;
}

std::string timeLeft(std::chrono::steady_clock::time_point begun, uint64_t done,
                     uint64_t all) {
  if (done == 0 || all < done) return "";
  const std::chrono::duration<double> spent =
      std::chrono::steady_clock::now() - begun;
  return ", " +
         clockTime(spent.count() * static_cast<double>(all - done) /
                   static_cast<double>(done)) +
         " left";
}

}  // namespace kit
