// Everything that the program prints, line by line, to standard error.

#ifndef PALVOR_CLI_REPORT_H_
#define PALVOR_CLI_REPORT_H_

#include <cstdint>
#include <string>

#include "palvor/merge.h"

namespace cli {

// Writes "# " and the formatted message, which brings its own line end.
[[gnu::format(printf, 1, 2)]] void say(const char* format, ...);

// Says what failed: a line for the file that is to blame, if there is one, one
// that may help, if there is one, and the error.
void sayError(const palvor::Error& error, const std::string& hint = "");

// The lines of a merge. With `quiet` there are none but the warning that
// nothing will be merged.
class Report final : public palvor::MergeObserver {
 public:
  //   oddBuffers  what may be wrong with the sizes of the buffers, or ""
  Report(bool quiet, std::string oddBuffers);

  void inputsKnown(const palvor::InputSummary& inputs) override;
  void buffersTooSmall() override;
  void ready(const palvor::BufferSummary& buffers) override;
  void flushed(const palvor::ArrayFlush& flush) override;
  void flushed(const palvor::TreeFlush& flush) override;
  void merged(const palvor::MergeReport& report) override;

  // The line that ends the run.
  void finished(const palvor::MergeReport& report) const;

 private:
  bool quiet_;
  std::string oddBuffers_;
  // Readings at the start of the run, in milliseconds.
  int64_t processorStart_;
  int64_t wallStart_;
};

}  // namespace cli

#endif  // PALVOR_CLI_REPORT_H_
