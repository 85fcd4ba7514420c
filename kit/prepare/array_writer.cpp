#include "kit/prepare/array_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kit {
namespace {

LcpEntry entryOf(uint64_t bits, uint32_t restBefore, uint32_t rest) {
  const uint64_t shorter = 2 * uint64_t{std::min(restBefore, rest)};
  const bool ended = bits >= shorter;
  if (ended) bits = shorter;
  if (bits >= static_cast<uint64_t>(kLcpLimit)) {
    throw std::runtime_error(fmt::format(
        "two suffixes share {} characters: an LCP entry holds less than {}",
        bits / 2, kLcpLimit / 2));
  }
  return makeLcpEntry(static_cast<int>(bits), ended ? 0 : 1);
}

}  // namespace

ArrayWriter::ArrayWriter(const DataFolder& folder, const PsaText& psa,
                         const InputFinder& finder, const ArrayFormat& format)
    : finder_(finder),
      origin_(format.zeroOrigin ? 0 : psa.firstInput),
      records_(folder, psa.number, ".stpsa") {
  if (format.withLcp) entries_.emplace(folder, psa.number, ".stlcp");
}

ArrayWriter::File::File(const DataFolder& folder, int number,
                        const std::string& kind)
    : name(folder.name(static_cast<uint64_t>(number), kind)),
      file(folder.path(static_cast<uint64_t>(number), kind)) {}

void ArrayWriter::File::write(uint64_t offset, const void* bytes, size_t size) {
  file.writeAt(offset, bytes, size);
  checksum.add(offset, bytes, size);
}

ManifestEntry ArrayWriter::File::commit() {
  file.commit();
  return {name, checksum.size(), checksum.digest(), "", ""};
}

void ArrayWriter::append(RecordBlock& block, size_t position,
                         uint64_t characters, uint64_t bits) const {
  const size_t input = finder_.find(position);
  const auto pos = static_cast<uint32_t>(position);
  block.records.push_back({(origin_ + static_cast<uint32_t>(input)) << 2,
                           pos - finder_.begin(input),
                           static_cast<uint32_t>(characters >> 32),
                           static_cast<uint32_t>(characters)});
  if (!entries_) return;
  const uint32_t rest = finder_.end(input) - pos;
  const bool first = block.rank == 0 && block.entries.empty();
  block.entries.push_back(first ? 0 : entryOf(bits, block.lastRest, rest));
  block.lastRest = rest;
}

void ArrayWriter::write(const RecordBlock& block) {
  records_.write(sizeof(Suffix) * block.rank, block.records.data(),
                 sizeof(Suffix) * block.records.size());
  if (!entries_) return;
  entries_->write(sizeof(LcpEntry) * block.rank, block.entries.data(),
                  sizeof(LcpEntry) * block.entries.size());
}

void ArrayWriter::restart() {
  records_.checksum.restart();
  if (entries_) entries_->checksum.restart();
}

std::vector<ManifestEntry> ArrayWriter::commit() {
  std::vector<ManifestEntry> written;
  written.push_back(records_.commit());
  if (entries_) written.push_back(entries_->commit());
  return written;
}

}  // namespace kit
