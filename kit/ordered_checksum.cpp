#include "kit/ordered_checksum.h"

#include <fmt/format.h>
#include <xxhash.h>

#include <fstream>
#include <new>
#include <vector>

namespace kit {
namespace {

std::string hexadecimal(XXH64_hash_t hash) {
  return fmt::format("{:016x}", hash);
}

}  // namespace

OrderedChecksum::OrderedChecksum() : state_(XXH3_createState()) {
  if (!state_) throw std::bad_alloc();
  restart();
}

void OrderedChecksum::Free::operator()(XXH3_state_s* state) const {
  XXH3_freeState(state);
}

void OrderedChecksum::restart() {
  const std::lock_guard lock(mutex_);
  XXH3_64bits_reset(state_.get());
  size_ = 0;
  early_.clear();
}

void OrderedChecksum::add(uint64_t offset, const void* bytes, size_t size) {
  const std::lock_guard lock(mutex_);
  if (offset != size_) {
    early_.emplace(offset, std::string(static_cast<const char*>(bytes), size));
    return;
  }
  XXH3_64bits_update(state_.get(), bytes, size);
  size_ += size;
  for (auto next = early_.begin(); next != early_.end() && next->first == size_;
       next = early_.erase(next)) {
    XXH3_64bits_update(state_.get(), next->second.data(), next->second.size());
    size_ += next->second.size();
  }
}

std::string OrderedChecksum::digest() const {
  const std::lock_guard lock(mutex_);
  return hexadecimal(XXH3_64bits_digest(state_.get()));
}

std::string checksumOf(const void* bytes, size_t size) {
  return hexadecimal(XXH3_64bits(bytes, size));
}

std::string checksumOfFile(const std::string& path) {
  constexpr size_t kBlock = size_t{1} << 18;
  std::ifstream file(path, std::ios::binary);
  std::vector<char> block(kBlock);
  OrderedChecksum checksum;
  while (file.good()) {
    file.read(block.data(), static_cast<std::streamsize>(block.size()));
    checksum.add(checksum.size(), block.data(),
                 static_cast<size_t>(file.gcount()));
  }
  return file.eof() ? checksum.digest() : "";
}

}  // namespace kit
