// The merge's errors as the kit's.

#ifndef PALVOR_KIT_MERGE_ENGINE_ERROR_H_
#define PALVOR_KIT_MERGE_ENGINE_ERROR_H_

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "palvor/error.h"

namespace kit {

// Calls a function of the merge. Its Error is thrown on as std::runtime_error,
// whose text has the file and the reason, too, where the merge knows them.
template <typename Function>
auto callEngine(Function function) {
  try {
    return function();
  } catch (const palvor::Error& error) {
    const std::string text = error.what();
    if (error.file().empty()) throw std::runtime_error(text);
    if (text.find(error.file()) != std::string::npos) {
      throw std::runtime_error(fmt::format("{}: {}", text, error.reason()));
    }
    throw std::runtime_error(
        fmt::format("{}: {}: {}", error.file(), error.reason(), text));
  }
}

}  // namespace kit

#endif  // PALVOR_KIT_MERGE_ENGINE_ERROR_H_
