#include "kit/message.h"

#include <fmt/format.h>

#include <cstdio>
#include <string>

namespace kit {

void say(std::string_view text) {
  const std::string line = fmt::format("palvor-kit: {}\n", text);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace kit
