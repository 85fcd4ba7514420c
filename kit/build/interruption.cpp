#include "kit/build/interruption.h"

#include <signal.h>
#include <unistd.h>

#include <string_view>

namespace kit {
namespace {

constexpr std::string_view kNote =
    "\npalvor-kit: interrupted; the same command goes on from here\n";

constexpr int kSignals[] = {SIGINT, SIGTERM};

void tell(int signal) {
  [[maybe_unused]] const ssize_t written =
      ::write(STDERR_FILENO, kNote.data(), kNote.size());
  ::signal(signal, SIG_DFL);
  ::raise(signal);
}

}  // namespace

InterruptionNote::InterruptionNote() {
  for (const int signal : kSignals) {
    // One that is ignored stays so, as of a run in the background.
    if (::signal(signal, tell) == SIG_IGN) ::signal(signal, SIG_IGN);
  }
}

InterruptionNote::~InterruptionNote() {
  for (const int signal : kSignals) {
    if (::signal(signal, SIG_DFL) == SIG_IGN) ::signal(signal, SIG_IGN);
  }
}

}  // namespace kit
