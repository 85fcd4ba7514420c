#include "kit/prepare/manifest.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "kit/file_error.h"
#include "kit/ordered_checksum.h"
#include "kit/output_file.h"
#include "kit/table_fields.h"

namespace kit {
namespace {

constexpr const char* kOptions = "options\t";

// The entry that a line of five fields names; its name is empty if it is none.
ManifestEntry entryOf(const std::string& line) {
  std::vector<std::string> fields(1);
  for (const char c : line) {
    if (c == '\t') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  if (fields.size() != 5) return {};
  ManifestEntry entry = {fields[0], 0, fields[2], fields[3], fields[4]};
  const char* end = fields[1].data() + fields[1].size();
  if (std::from_chars(fields[1].data(), end, entry.bytes).ptr != end) return {};
  return entry;
}

std::string lineOf(const ManifestEntry& entry) {
  return fmt::format("{}\t{}\t{}\t{}\t{}\n", entry.name, entry.bytes,
                     entry.checksum, entry.inputs, escaped(entry.source));
}

}  // namespace

Manifest::Manifest(std::string folder, std::string path, std::string options)
    : folder_(std::move(folder)),
      path_(std::move(path)),
      options_(std::move(options)) {}

std::vector<ManifestEntry> Manifest::listedIn(const std::string& path) {
  std::ifstream file(path);
  if (!file.is_open()) throw FileError(path, std::strerror(errno));
  std::vector<ManifestEntry> entries;
  for (std::string line; std::getline(file, line) && !file.eof();) {
    if (line.starts_with(kOptions)) continue;
    entries.push_back(entryOf(line));
    if (entries.back().name.empty()) throw FileError(path, "not a manifest");
  }
  return entries;
}

void Manifest::adopt(const std::vector<ManifestEntry>& entries) {
  for (const ManifestEntry& entry : entries) lines_[entry.name] = entry;
}

bool Manifest::resume() {
  errno = 0;
  std::ifstream file(path_);
  if (!file.is_open() && (errno == ENOENT || errno == ENOTDIR)) return false;
  if (!file.is_open()) {
    throw std::system_error(errno, std::generic_category(),
                            "can't open " + path_);
  }
  std::string line;
  if (!std::getline(file, line) || line != kOptions + options_) return false;
  while (std::getline(file, line) && !file.eof()) {
    ManifestEntry entry = entryOf(line);
    if (!entry.name.empty()) found_[entry.name] = std::move(entry);
  }
  return true;
}

void Manifest::begin() const { append(kOptions + options_ + '\n', O_TRUNC); }

bool Manifest::stands(const std::string& name,
                      const std::string& inputs) const {
  const auto entry = found_.find(name);
  if (entry == found_.end() || entry->second.inputs != inputs) return false;
  const std::string path = folder_ + "/" + name;
  std::error_code failure;
  return std::filesystem::file_size(path, failure) == entry->second.bytes &&
         !failure && checksumOfFile(path) == entry->second.checksum;
}

void Manifest::add(const std::vector<ManifestEntry>& entries) {
  std::string text;
  for (const ManifestEntry& entry : entries) {
    lines_[entry.name] = entry;
    text += lineOf(entry);
  }
  append(text, O_APPEND);
}

std::vector<std::string> Manifest::finish() const {
  OutputFile file(path_);
  const std::string first = kOptions + options_ + '\n';
  file.write(first.data(), first.size());
  for (const auto& [name, entry] : lines_) {
    const std::string line = lineOf(entry);
    file.write(line.data(), line.size());
  }
  file.commit();
  std::vector<std::string> others;
  for (const auto& [name, entry] : found_) {
    if (!lines_.contains(name)) others.push_back(name);
  }
  return others;
}

std::set<std::string> Manifest::names() const {
  std::set<std::string> names;
  for (const auto& [name, entry] : found_) names.insert(name);
  return names;
}

void Manifest::append(const std::string& lines, int flags) const {
  const auto fail = [this](const char* what) {
    throw std::system_error(errno, std::generic_category(), what + path_);
  };
  const int file =
      ::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0644);
  if (file < 0) fail("can't create ");
  if (!writeAll(file, lines)) {
    const int reason = errno;
    ::close(file);
    errno = reason;
    fail("can't write ");
  }
  if (::close(file) < 0) fail("can't write ");
}

std::string checksumOfInputs(const PsaText& psa) {
  std::vector<uint64_t> shape = {psa.firstInput};
  for (const InputString& input : psa.inputs) shape.push_back(input.length);
  return checksumOf(psa.words.data(), sizeof(uint32_t) * psa.words.size()) +
         checksumOf(shape.data(), sizeof(uint64_t) * shape.size());
}

}  // namespace kit
