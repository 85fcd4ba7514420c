#include "kit/build/result_manifest.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "kit/file_error.h"
#include "kit/json.h"
#include "kit/output_file.h"
#include "kit/record_file.h"

namespace kit {
namespace {

constexpr int kFormat = 1;

std::string dumped(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

Json jsonOf(const StoredFile& file) {
  return {{"file", file.file}, {"bytes", file.bytes}, {"sha256", file.sha256}};
}

Json jsonOf(const ResultInput& input) {
  Json json = jsonOf(input.stored);
  json["records"] = input.records;
  json["strings"] = input.strings;
  json["characters"] = input.characters;
  return json;
}

Json jsonOf(const RunFigures& run) {
  return {{"jobs", run.jobs},
          {"memory_allowed", run.memory},
          {"memory_peak", run.peakMemory},
          {"resumed", run.resumed},
          {"seconds",
           {{"prepare", run.prepare},
            {"merge", run.merge},
            {"checksums", run.checksums},
            {"check", run.check},
            {"all", run.all}}}};
}

StoredFile storedFile(const Json& json) {
  return {json.at("file"), json.at("bytes"), json.at("sha256")};
}

ResultInput inputOf(const Json& json) {
  return {storedFile(json), json.at("records"), json.at("strings"),
          json.at("characters")};
}

RunFigures runOf(const Json& json) {
  const Json& seconds = json.at("seconds");
  return {json.at("jobs"),         json.at("memory_allowed"),
          json.at("memory_peak"),  json.at("resumed"),
          seconds.at("prepare"),   seconds.at("merge"),
          seconds.at("checksums"), seconds.at("check"),
          seconds.at("all")};
}

ResultManifest manifestOf(const Json& json) {
  if (json.at("format") != kFormat) {
    throw std::invalid_argument("of a format that this version doesn't know");
  }
  ResultManifest manifest;
  manifest.version = json.at("version");
  manifest.command = json.at("command");
  manifest.trees = json.at("order") == "trees";
  manifest.bothStrands = json.at("strands") == "both";
  for (const Json& input : json.at("inputs")) {
    manifest.inputs.push_back(inputOf(input));
  }
  manifest.suffixes = json.at("suffixes");
  for (const Json& output : json.at("outputs")) {
    manifest.outputs.push_back(storedFile(output));
  }
  manifest.checked = json.at("checked");
  manifest.run = runOf(json.at("run"));
  return manifest;
}

}  // namespace

uint64_t genomesOf(const ResultManifest& manifest) {
  return static_cast<uint64_t>(std::ranges::count_if(
      manifest.inputs,
      [](const ResultInput& input) { return input.strings > 0; }));
}

ResultManifest readResultManifest(const std::string& path) {
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  try {
    return manifestOf(Json::parse(bytes.begin(), bytes.end()));
  } catch (const std::exception& error) {
    throw FileError(path,
                    fmt::format("not a result's manifest: {}", error.what()));
  }
}

void writeResultManifest(const ResultManifest& manifest,
                         const std::string& path) {
  Json json = {{"format", kFormat},
               {"program", "palvor-kit"},
               {"version", manifest.version},
               {"command", manifest.command},
               {"order", manifest.trees ? "trees" : "array"},
               {"strands", manifest.bothStrands ? "both" : "forward"}};
  json["inputs"] = Json::array();
  for (const ResultInput& input : manifest.inputs) {
    json["inputs"].push_back(jsonOf(input));
  }
  json["suffixes"] = manifest.suffixes;
  json["outputs"] = Json::array();
  for (const StoredFile& output : manifest.outputs) {
    json["outputs"].push_back(jsonOf(output));
  }
  json["checked"] = manifest.checked;
  json["run"] = jsonOf(manifest.run);
  const std::string text = dumped(json, 2) + "\n";
  OutputFile file(path);
  file.write(text.data(), text.size());
  file.commit();
}

bool samePlan(const ResultManifest& a, const ResultManifest& b) {
  return a.version == b.version && a.trees == b.trees &&
         a.bothStrands == b.bothStrands &&
         std::ranges::equal(
             a.inputs, b.inputs, {},
             [](const auto& input) { return input.stored.file; },
             [](const auto& input) { return input.stored.file; });
}

bool sameInputs(const ResultManifest& a, const ResultManifest& b) {
  return samePlan(a, b) &&
         std::ranges::equal(a.inputs, b.inputs, {}, &ResultInput::stored,
                            &ResultInput::stored);
}

std::string nameInManifest(const std::string& file) {
  return Json::parse(dumped(Json(file), -1)).get<std::string>();
}

}  // namespace kit
