// Which genome an input belongs to, and which group a genome.

#ifndef PALVOR_KIT_ANSWERS_GENOMES_H_
#define PALVOR_KIT_ANSWERS_GENOMES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "kit/answers/merged_inputs.h"

namespace kit {

class Genomes {
 public:
  // Without a table of groups each sequence file is a genome. The table has a
  // line for each file or record: its name (a file's with or without its
  // folder), its genome's name and, if the genome is in a group, the group's,
  // parted by tabs; lines that begin with # say nothing. A record's own line
  // counts more than its file's. Throws FileError, which names the line, for
  // one that belongs to no input or says otherwise than another, and if an
  // input belongs to no line.
  Genomes(const MergedInputs& inputs, const std::string& groupsTable);

  uint32_t count() const { return static_cast<uint32_t>(names_.size()); }
  uint32_t of(uint32_t input) const { return ofInput_[input]; }

  // The genome of each input.
  const std::vector<uint32_t>& ofInputs() const { return ofInput_; }

  // In the order in which the inputs come.
  const std::string& name(uint32_t genome) const { return names_[genome]; }
  const std::vector<std::string>& names() const { return names_; }

  // The group of a genome; empty: none.
  const std::string& group(uint32_t genome) const { return groups_[genome]; }

 private:
  std::vector<uint32_t> ofInput_;
  std::vector<std::string> names_;
  std::vector<std::string> groups_;
};

}  // namespace kit

#endif  // PALVOR_KIT_ANSWERS_GENOMES_H_
