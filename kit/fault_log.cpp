#include "kit/fault_log.h"

#include <fmt/format.h>

#include "kit/json.h"
#include "kit/standard_output.h"

namespace kit {

void FaultLog::add(const std::string& file, const std::string& reason) {
  note(file, std::nullopt, reason);
  if (!style_.goOn) throw CheckStopped();
}

void FaultLog::add(const std::string& file, uint64_t record,
                   const std::string& reason) {
  note(file, record, reason);
  if (!style_.goOn) throw CheckStopped();
}

void FaultLog::note(const std::string& file, std::optional<uint64_t> record,
                    const std::string& reason) {
  const std::lock_guard lock(mutex_);
  count_++;
  if (style_.json) {
    Json fault = {{"file", file}};
    if (record) fault["record"] = *record;
    fault["fault"] = reason;
    writeOutput(jsonLine(fault));
  } else if (record) {
    writeOutput(fmt::format("{}: record {}: {}\n", file, *record, reason));
  } else {
    writeOutput(fmt::format("{}: {}\n", file, reason));
  }
}

}  // namespace kit
