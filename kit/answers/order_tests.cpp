#include "kit/answers/order_tests.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "kit/file_error.h"

namespace kit {

OrderTests::OrderTests(const std::vector<uint32_t>& lengths, std::string array,
                       std::string lcps, uint64_t first)
    : lengths_(lengths),
      arrayPath_(std::move(array)),
      lcpPath_(std::move(lcps)),
      next_(first) {}

void OrderTests::take(std::span<const Suffix> suffixes,
                      std::span<const LcpEntry> entries) {
  for (size_t i = 0; i < suffixes.size(); i++) {
    if (!isRight(suffixes[i], entries[i])) explain(suffixes[i], entries[i]);
    next_++;
  }
}

// Steps to the suffix only if it is right.
inline bool OrderTests::isRight(const Suffix& suffix, LcpEntry entry) {
  const uint32_t input = inputNumber(suffix);
  if (input >= lengths_.size() || suffix.pos >= lengths_[input]) return false;
  const uint64_t rest = 2 * uint64_t{lengths_[input] - suffix.pos};
  const uint64_t prefix = prefixBits(suffix);
  if (previousRest_ != 0) {
    const uint64_t shorter = std::min(previousRest_, rest);
    const auto alike =
        static_cast<uint64_t>(std::countl_zero(prefix ^ previousPrefix_));
    const uint64_t seen = std::min(alike, shorter);
    const auto bits = static_cast<uint64_t>(lcpBits(entry));
    const bool inside = bits < shorter;
    const bool known = seen < 64 ? bits == seen : bits >= 64;
    const bool ordered =
        inside ? previousPrefix_ <= prefix : previousRest_ <= rest;
    if (!known || bits > shorter || lcpFirstbit(entry) != inside || !ordered) {
      return false;
    }
  }
  previousPrefix_ = prefix;
  previousRest_ = rest;
  return true;
}

void OrderTests::explain(const Suffix& suffix, LcpEntry entry) const {
  const auto error = [&](const std::string& path, const std::string& reason) {
    return FileError(path, fmt::format("record {}: {}", next_, reason));
  };
  const uint32_t input = inputNumber(suffix);
  if (input >= lengths_.size()) {
    throw error(arrayPath_, fmt::format("there is no input {}, only {}", input,
                                        lengths_.size()));
  }
  if (suffix.pos >= lengths_[input]) {
    throw error(arrayPath_, fmt::format("input {} has no suffix {}, only {}",
                                        input, suffix.pos, lengths_[input]));
  }
  const uint64_t prefix = prefixBits(suffix);
  const uint64_t rest = 2 * uint64_t{lengths_[input] - suffix.pos};
  const auto alike =
      static_cast<uint64_t>(std::countl_zero(prefix ^ previousPrefix_));
  const bool ends = alike >= std::min({previousRest_, rest, uint64_t{64}});
  if (ends ? alike < 64 && previousRest_ > rest : previousPrefix_ > prefix) {
    throw error(arrayPath_, "not in ascending order");
  }
  throw error(lcpPath_, fmt::format("entry {} is not what the suffixes of {} "
                                    "share",
                                    entry, arrayPath_));
}

}  // namespace kit
