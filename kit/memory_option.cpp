#include "kit/memory_option.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "kit/amounts.h"

namespace kit {

CLI::Option* takeSize(CLI::Option* option, bool thousands) {
  return option->transform(CLI::AsSizeValue(thousands))
      ->transform(CLI::Validator(
          [](const std::string& given) {
            return given.starts_with('-') ? given + " is less than nothing"
                                          : std::string();
          },
          ""))
      ->type_name("BYTES");
}

void addMemoryOption(CLI::App& command, uint64_t& memory,
                     const std::string& what) {
  takeSize(command.add_option("--memory", memory, what), false);
}

std::string memoryText(uint64_t bytes) {
  constexpr uint64_t kGibi = uint64_t{1} << 30;
  constexpr uint64_t kMebi = uint64_t{1} << 20;
  if (bytes > 0 && bytes % kGibi == 0) return fmt::format("{}G", bytes / kGibi);
  if (bytes > 0 && bytes % kMebi == 0) return fmt::format("{}M", bytes / kMebi);
  return roundBytes(bytes);
}

}  // namespace kit
