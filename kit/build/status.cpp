#include "kit/build/status.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <vector>

#include "kit/amounts.h"
#include "kit/build/build_stages.h"
#include "kit/build/checksums.h"
#include "kit/build/result_folder.h"
#include "kit/build/result_manifest.h"
#include "kit/file_error.h"
#include "kit/json.h"
#include "kit/record_file.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

namespace fs = std::filesystem;

struct Status {
  std::optional<ResultManifest> result;  // if there is one
  std::vector<std::string> faults;       // of its files
  std::string unfinished;  // what an interrupted run has done; empty: no run
};

// What is wrong with a file; nothing if it is as it was written.
std::string faultOf(const ResultFolder& folder, const StoredFile& file,
                    const StatusOptions& options) {
  const std::string fault = folder.faultOf(file.file, file.bytes);
  if (!fault.empty() || !options.checksums) return fault;
  const SummingMeans means = {options.jobs, "reading",
                              buildProgress("", false)};
  const StoredFile found = sumFiles(folder.path(""), {file.file}, means)[0];
  return found == file ? "" : "other contents than it was written with";
}

std::string progressOf(const ResultFolder& part) {
  const std::string manifest = part.path(kUnfinishedManifest);
  if (!isThere(manifest)) return "";
  const ResultManifest found = readResultManifest(manifest);
  if (!found.checked.empty()) return "proved";
  if (!found.outputs.empty()) return "merged";
  return isThere(part.dataBase() + ".stlengths") ? "prepared" : "begun";
}

Status statusOf(const StatusOptions& options) {
  const ResultFolder folder(options.result);
  Status status;
  status.unfinished = progressOf(folder.unfinished());
  if (!folder.isResult()) return status;
  status.result = readResultManifest(folder.path(kResultManifest));
  for (const StoredFile& file : status.result->outputs) {
    const std::string fault = faultOf(folder, file, options);
    if (!fault.empty()) {
      status.faults.push_back(
          fmt::format("{}: {}", folder.path(file.file), fault));
    }
  }
  return status;
}

const char* stateOf(const Status& status) {
  if (!status.result) return "absent";
  return status.faults.empty() ? "whole" : "damaged";
}

uint64_t bytesOf(const ResultManifest& result) {
  uint64_t bytes = 0;
  for (const StoredFile& file : result.outputs) bytes += file.bytes;
  return bytes;
}

void printJson(const StatusOptions& options, const Status& status) {
  Json json = {{"result", options.result}, {"state", stateOf(status)}};
  if (status.result) {
    const ResultManifest& result = *status.result;
    json["version"] = result.version;
    json["order"] = result.trees ? "trees" : "array";
    json["strands"] = result.bothStrands ? "both" : "forward";
    json["genomes"] = genomesOf(result);
    json["suffixes"] = result.suffixes;
    json["bytes"] = bytesOf(result);
    json["checked"] = result.checked;
    json["faults"] = status.faults;
  }
  if (!status.unfinished.empty()) json["unfinished"] = status.unfinished;
  writeOutput(jsonLine(json));
}

void printText(const StatusOptions& options, const Status& status) {
  if (status.result) {
    const ResultManifest& result = *status.result;
    writeOutput(fmt::format(
        "{}: {}, {} of {} genomes, {} suffixes, {}\n", options.result,
        stateOf(status),
        result.trees ? "suffix trees" : "a suffix array with its LCP array",
        genomesOf(result), result.suffixes, roundBytes(bytesOf(result))));
    writeOutput(fmt::format("made by palvor-kit {}: {}\n", result.version,
                            result.command));
    writeOutput(result.checked.empty()
                    ? "not proved\n"
                    : fmt::format("proved: {}\n", result.checked));
    for (const std::string& fault : status.faults) writeOutput(fault + "\n");
  }
  if (!status.unfinished.empty()) {
    writeOutput(fmt::format(
        "{}: left by an interrupted run, {}; the same command goes on with "
        "it\n",
        ResultFolder(options.result).unfinished().path(), status.unfinished));
  }
}

}  // namespace

void printStatus(const StatusOptions& options) {
  const Status status = statusOf(options);
  options.json ? printJson(options, status) : printText(options, status);
  finishOutput();
  if (!status.result) throw FileError(options.result, "no result of a build");
  if (!status.faults.empty()) {
    throw FileError(options.result,
                    fmt::format("{} files are not as they were written",
                                status.faults.size()));
  }
}

}  // namespace kit
