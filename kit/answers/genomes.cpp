#include "kit/answers/genomes.h"

#include <fmt/format.h>

#include <filesystem>
#include <unordered_map>
#include <utility>

#include "kit/file_error.h"
#include "kit/record_file.h"
#include "kit/table_reader.h"

namespace kit {
namespace {

struct Membership {
  std::string genome;
  std::string group;
  uint64_t line = 0;
  bool used = false;
};

using Memberships = std::unordered_map<std::string, Membership>;

Memberships readGroups(const std::string& path) {
  const std::vector<char> bytes = RecordFile<char>(path).read(0, UINT64_MAX);
  std::string text(bytes.begin(), bytes.end());
  std::erase(text, '\r');
  if (!text.empty() && text.back() != '\n') text += '\n';
  TableReader table(path, text);
  Memberships result;
  for (uint64_t line = 1; table.nextLine(); line++) {
    const std::string name = table.text();
    if (name.starts_with('#') || (name.empty() && !table.more())) continue;
    Membership member;
    member.line = line;
    member.genome = table.text();
    if (table.more()) member.group = table.text();
    if (table.more()) table.fail("too many fields");
    if (name.empty() || member.genome.empty()) table.fail("an empty name");
    if (!result.emplace(name, std::move(member)).second) {
      table.fail(fmt::format("'{}' has a line already", name));
    }
  }
  return result;
}

// The line that counts for an input, or null.
Membership* findMembership(Memberships& members, const InputOrigin& origin) {
  const std::string fileName =
      std::filesystem::path(origin.file).filename().string();
  for (const std::string& name : {origin.sequence, origin.file, fileName}) {
    const auto found = members.find(name);
    if (found != members.end()) return &found->second;
  }
  return nullptr;
}

}  // namespace

Genomes::Genomes(const MergedInputs& inputs, const std::string& groupsTable) {
  Memberships members;
  if (!groupsTable.empty()) members = readGroups(groupsTable);
  std::unordered_map<std::string, uint32_t> numbers;
  for (uint32_t i = 0; i < inputs.count(); i++) {
    const InputOrigin& origin = inputs.origin(i);
    Membership own = {.genome = origin.file, .group = ""};
    if (!groupsTable.empty()) {
      Membership* found = findMembership(members, origin);
      if (found == nullptr) {
        throw FileError(groupsTable, fmt::format("no line for record {} of {}",
                                                 origin.sequence, origin.file));
      }
      found->used = true;
      own = *found;
    }
    const auto [entry, isNew] = numbers.emplace(own.genome, count());
    if (isNew) {
      names_.push_back(own.genome);
      groups_.push_back(own.group);
    } else if (groups_[entry->second] != own.group) {
      throw FileError(groupsTable, fmt::format("line {}: genome {} is in "
                                               "another group as well",
                                               own.line, own.genome));
    }
    ofInput_.push_back(entry->second);
  }
  for (const auto& [name, member] : members) {
    if (member.used) continue;
    throw FileError(groupsTable, fmt::format("line {}: no file or record is "
                                             "called {}",
                                             member.line, name));
  }
}

}  // namespace kit
