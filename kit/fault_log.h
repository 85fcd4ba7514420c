// What a check finds wrong.

#ifndef PALVOR_KIT_FAULT_LOG_H_
#define PALVOR_KIT_FAULT_LOG_H_

#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <string>

namespace kit {

// Ends a check that stops at the first fault. The fault has been reported.
class CheckStopped : public std::exception {
 public:
  const char* what() const noexcept override { return "stopped at a fault"; }
};

struct FaultStyle {
  bool goOn = false;  // after a fault
  bool json = false;  // lines of JSON instead of text
};

// Prints faults to standard output as they come. Threads may share one.
class FaultLog {
 public:
  explicit FaultLog(const FaultStyle& style) : style_(style) {}

  // Reports a fault of a whole file, or of one of its records. Throws
  // CheckStopped unless the check goes on.
  void add(const std::string& file, const std::string& reason);
  void add(const std::string& file, uint64_t record, const std::string& reason);

  // The same, without throwing: for faults that leave nothing to go on with.
  void note(const std::string& file, std::optional<uint64_t> record,
            const std::string& reason);

  uint64_t count() const { return count_; }

 private:
  const FaultStyle style_;
  std::mutex mutex_;
  uint64_t count_ = 0;
};

}  // namespace kit

#endif  // PALVOR_KIT_FAULT_LOG_H_
