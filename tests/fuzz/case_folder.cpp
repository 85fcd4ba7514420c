#include "case_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace {

namespace fs = std::filesystem;

struct Kind {
  bool numbered;
  const char* ending;
};

constexpr Kind kKinds[] = {
    {false, ".stlengths"}, {false, ".stblengths"}, {false, ".stplengths"},
    {true, ".stbin"},      {true, ".stpsa"},       {true, ".stlcp"},
    {false, ".stpsa"},     {false, ".stlcp"},      {false, ".stdiv"},
    {true, ".stree"},
};

std::string nameOf(uint8_t section) {
  const unsigned kinds = std::size(kKinds);
  const unsigned number = (section & 15U) + (section >> 4) / kinds * 16;
  const Kind& kind = kKinds[(section >> 4) % kinds];
  std::string name = "x.ST/x";
  if (kind.numbered) name.append("_").append(std::to_string(number));
  return name + kind.ending;
}

}  // namespace

void CaseFolder::renew() const {
  remove();
  fs::create_directories(path("x.ST"));
}

void CaseFolder::remove() const {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

std::vector<std::string> CaseFolder::fill(FuzzInput& input) const {
  std::map<std::string, std::string> files;
  while (!input.empty()) {
    const std::string name = nameOf(input.takeByte());
    const size_t low = input.takeByte();
    const size_t high = input.takeByte();
    files[name] += input.take(high << 8 | low);
  }
  std::vector<std::string> paths;
  for (const auto& [name, bytes] : files) {
    write(name, bytes);
    paths.push_back(path(name));
  }
  return paths;
}

void CaseFolder::write(const std::string& name, std::string_view bytes) const {
  std::ofstream file(path(name), std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string CaseFolder::read(const std::string& name) const {
  std::ifstream file(path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
