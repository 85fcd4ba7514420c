#include "kit/answers/ordered_output.h"

#include <utility>

#include "kit/standard_output.h"

namespace kit {

void OrderedOutput::write(size_t part, std::string_view text) {
  const std::lock_guard lock(mutex_);
  if (part == next_) {
    writeOutput(text);
  } else {
    waiting_[part].text += text;
  }
}

void OrderedOutput::end(size_t part) {
  const std::lock_guard lock(mutex_);
  waiting_[part].ended = true;
  // The first one that goes on is written as far as it is.
  while (!waiting_.empty() && waiting_.begin()->first == next_) {
    const Part first = std::move(waiting_.begin()->second);
    waiting_.erase(waiting_.begin());
    writeOutput(first.text);
    if (!first.ended) break;
    next_++;
  }
}

}  // namespace kit
