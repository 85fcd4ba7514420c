#include "kit/memory_option.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "kit/amounts.h"

namespace kit {

void addMemoryOption(CLI::App& command, uint64_t& memory,
                     const std::string& what) {
  command.add_option("--memory", memory, what)
      ->transform(CLI::AsSizeValue(false))
      ->type_name("BYTES");
}

std::string memoryText(uint64_t bytes) {
  constexpr uint64_t kGibi = uint64_t{1} << 30;
  constexpr uint64_t kMebi = uint64_t{1} << 20;
  if (bytes > 0 && bytes % kGibi == 0) return fmt::format("{}G", bytes / kGibi);
  if (bytes > 0 && bytes % kMebi == 0) return fmt::format("{}M", bytes / kMebi);
  return roundBytes(bytes);
}

}  // namespace kit
