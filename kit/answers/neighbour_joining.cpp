#include "kit/answers/neighbour_joining.h"

#include <fmt/format.h>

#include <cstdint>
#include <limits>

namespace kit {
namespace {

// A name as Newick has it: between quotes if it has signs of its own there.
std::string quoted(const std::string& name) {
  if (!name.empty() &&
      name.find_first_of(" \t\n()[]{}:;,'\"_") == std::string::npos) {
    return name;
  }
  std::string result = "'";
  for (const char c : name) {
    result += c;
    if (c == '\'') result += c;
  }
  return result + "'";
}

}  // namespace

std::string neighbourJoining(GenomeMatrix<double> distances,
                             const std::vector<std::string>& names) {
  std::vector<std::string> subtrees;
  std::vector<uint32_t> left;  // rows of the matrix that are not joined yet
  for (uint32_t g = 0; g < distances.genomes(); g++) {
    subtrees.push_back(quoted(names[g]));
    left.push_back(g);
  }
  std::vector<double> sums(left.size());
  while (left.size() > 3) {
    for (const uint32_t i : left) {
      sums[i] = 0;
      for (const uint32_t j : left) sums[i] += distances(i, j);
    }
    const auto others = static_cast<double>(left.size() - 2);
    size_t first = 0, second = 1;
    double least = std::numeric_limits<double>::infinity();
    for (size_t i = 0; i < left.size(); i++) {
      for (size_t j = i + 1; j < left.size(); j++) {
        const double value = others * distances(left[i], left[j]) -
                             sums[left[i]] - sums[left[j]];
        if (value >= least) continue;
        least = value;
        first = i;
        second = j;
      }
    }
    const uint32_t a = left[first], b = left[second];
    const double both = distances(a, b);
    const double toA = both / 2 + (sums[a] - sums[b]) / (2 * others);
    subtrees[a] = fmt::format("({}:{:.6g},{}:{:.6g})", subtrees[a], toA,
                              subtrees[b], both - toA);
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(second));
    for (const uint32_t i : left) {
      if (i == a) continue;
      const double between = (distances(a, i) + distances(b, i) - both) / 2;
      distances(a, i) = between;
      distances(i, a) = between;
    }
  }
  if (left.empty()) return ";";
  if (left.size() == 1) return subtrees[left[0]] + ";";
  if (left.size() == 2) {
    return fmt::format("({}:{:.6g},{}:0);", subtrees[left[0]],
                       distances(left[0], left[1]), subtrees[left[1]]);
  }
  const uint32_t a = left[0], b = left[1], c = left[2];
  const double ab = distances(a, b), ac = distances(a, c), bc = distances(b, c);
  return fmt::format("({}:{:.6g},{}:{:.6g},{}:{:.6g});", subtrees[a],
                     (ab + ac - bc) / 2, subtrees[b], (ab + bc - ac) / 2,
                     subtrees[c], (ac + bc - ab) / 2);
}

}  // namespace kit
