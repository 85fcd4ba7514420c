// The names of the printed figures are explained in docs/glossary.md.

#include "cli/report.h"

#include <cstdarg>
#include <cstdio>
#include <limits>
#include <utility>

#include "palvor/format/suffix.h"
#include "palvor/format/tree_node.h"
#include "palvor/io/clocks.h"

namespace cli {
namespace {

// As the lines print them: milliseconds, in signed 32 bits.
int asInt(int64_t number) { return static_cast<int>(number); }

double asDouble(int64_t number) { return static_cast<double>(number); }

void sayCompaction(const palvor::CompactionReport& report) {
  const palvor::TreeCounts& records = report.records;
  say("  nl/nt/ni/nl/nr/ne/nd=%d/%d/%d/%d/%d/%d/%d\n", records.leaves,
      records.leafHeads, records.internal, records.left, records.right,
      records.endsAtBranch, records.duplicates);
  const auto& links = report.links;
  say("  n/h/c={%d/%d/%d, %d/%d/%d, %d/%d/%d}\n", links[0].registrations,
      links[0].distinct, links[0].probes, links[1].registrations,
      links[1].distinct, links[1].probes, links[2].registrations,
      links[2].distinct, links[2].probes);
}

}  // namespace

void say(const char* format, ...) {
  std::fputs("# ", stderr);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

void sayError(const palvor::Error& error, const std::string& hint) {
  if (!error.file().empty()) {
    say("%s: %s\n", error.file().c_str(), error.reason().c_str());
  }
  if (!hint.empty()) say("%s\n", hint.c_str());
  std::fputs("## ERROR: ", stderr);
  std::fflush(stderr);
  std::fprintf(stderr, "%s\n", error.what());
}

Report::Report(bool quiet, std::string oddBuffers)
    : quiet_(quiet),
      oddBuffers_(std::move(oddBuffers)),
      processorStart_(palvor::processorTime().milliseconds),
      wallStart_(palvor::wallMilliseconds()) {}

void Report::inputsKnown(const palvor::InputSummary& inputs) {
  if (quiet_) return;
  say("total length = %.0f, max input size = %d, number of inputs = %d, "
      "number of parts = %d\n",
      inputs.total, inputs.longest, inputs.inputs, inputs.streams);
}

void Report::buffersTooSmall() {
  say("WARNING: an input buffer holds no record of %d bytes: nothing will be "
      "merged (see -m and -M%s)\n",
      static_cast<int>(sizeof(palvor::Suffix)), oddBuffers_.c_str());
}

void Report::ready(const palvor::BufferSummary& buffers) {
  if (quiet_) return;
  say("in buff: %d suffixes, out buff: %d nodes, SS=%u NS=%u,  real %d ms\n",
      buffers.records, buffers.output,
      static_cast<unsigned>(sizeof(palvor::Suffix)),
      static_cast<unsigned>(sizeof(palvor::TreeNode)),
      asInt(palvor::wallMilliseconds() - wallStart_));
}

void Report::flushed(const palvor::ArrayFlush& flush) {
  if (quiet_) return;
  say("Flush array %3d: nbuff=%d t=%d ms\n", flush.number, flush.records,
      asInt(flush.milliseconds));
}

void Report::flushed(const palvor::TreeFlush& flush) {
  if (quiet_) return;
  // Not 0.0 / 0.0, which has its sign bit set on some processors.
  const double average = flush.lcps != 0
                             ? asDouble(flush.lcpSum) / asDouble(flush.lcps)
                             : std::numeric_limits<double>::quiet_NaN();
  say("Tree %3d:  c3 %2d  c4 %2d  c6 %6d  maxd=%d (%d ms), alcp=%.0f, time "
      "%d ms, real %d ms\n",
      flush.tree, flush.insertions.case3, flush.insertions.case4,
      flush.insertions.case6, flush.nodeDepth, asInt(flush.walkTime), average,
      asInt(flush.processorTime), asInt(flush.wallTime));
  if (flush.compaction) sayCompaction(*flush.compaction);
}

void Report::merged(const palvor::MergeReport& report) {
  if (quiet_) return;
  const palvor::Cost& cost = report.cost;
  say("Merge done: %.0f, %d ST%s, tnp2=%.0f tlcmp=%.0f tncmp=%.0f "
      "tnrc=%.0f/%.0f tnac=%.0f\n",
      asDouble(report.suffixes), report.trees, report.trees == 1 ? "" : "s",
      asDouble(cost.settled), asDouble(cost.positions),
      asDouble(cost.comparisons), asDouble(cost.found64More),
      asDouble(cost.unchanged), asDouble(cost.found64));
  const palvor::LcpStatistics& lcps = report.lcps;
  const int average =
      lcps.count > 0
          ? static_cast<int>(asDouble(lcps.sum) / asDouble(lcps.count))
          : 0;
  say("  maxp=%d tnlcp=%.0f alcp=%d maxlcp=%d nmlcp=%d/%d  tngb=%.0f\n",
      lcps.longestPath, asDouble(lcps.count), average, lcps.largest,
      asInt(lcps.above255), asInt(lcps.from32768), asDouble(cost.words));
}

void Report::finished(const palvor::MergeReport& report) const {
  if (quiet_) return;
  const palvor::ProcessorTime now = palvor::processorTime();
  say("Palvor: mem %lld bytes, %d PFs, real %d ms, lcp %d ms, r/w %d/%d ms, "
      "time %d ms\n",
      static_cast<long long>(report.memory), asInt(now.majorFaults),
      asInt(palvor::wallMilliseconds() - wallStart_), asInt(report.lcpTime),
      asInt(report.io.read), asInt(report.io.write),
      asInt(now.milliseconds - processorStart_));
}

}  // namespace cli
