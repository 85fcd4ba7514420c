#include "kit/amounts.h"

#include <fmt/format.h>

namespace kit {
namespace {

std::string rounded(double number, const char* unit) {
  return fmt::format("{:.{}f} {}", number, number < 10 ? 1 : 0, unit);
}

}  // namespace

std::string roundNumber(uint64_t number) {
  const auto value = static_cast<double>(number);
  if (number >= 1'000'000'000) return rounded(value / 1e9, "billion");
  if (number >= 1'000'000) return rounded(value / 1e6, "million");
  if (number >= 10'000) return rounded(value / 1e3, "thousand");
  return fmt::to_string(number);
}

std::string roundBytes(uint64_t bytes) {
  const auto value = static_cast<double>(bytes);
  if (bytes >= 1'000'000'000) return rounded(value / 1e9, "GB");
  if (bytes >= 1'000'000) return rounded(value / 1e6, "MB");
  return fmt::format("{} KB", (bytes + 999) / 1000);
}

}  // namespace kit
