#include "kit/fault_log.h"

#include <cstdio>

#include "kit/table_printer.h"

namespace kit {

void FaultLog::add(const std::string& file, const std::string& reason) {
  print(file, nullptr, reason);
}

void FaultLog::add(const std::string& file, uint64_t record,
                   const std::string& reason) {
  print(file, &record, reason);
}

void FaultLog::print(const std::string& file, const uint64_t* record,
                     const std::string& reason) {
  const std::lock_guard lock(mutex_);
  count_++;
  if (json_) {
    std::printf("{\"file\":%s", jsonText(file).c_str());
    if (record != nullptr) {
      std::printf(",\"record\":%llu", static_cast<unsigned long long>(*record));
    }
    std::printf(",\"fault\":%s}\n", jsonText(reason).c_str());
  } else if (record != nullptr) {
    std::printf("%s: record %llu: %s\n", file.c_str(),
                static_cast<unsigned long long>(*record), reason.c_str());
  } else {
    std::printf("%s: %s\n", file.c_str(), reason.c_str());
  }
  if (!goOn_) throw CheckStopped();
}

}  // namespace kit
