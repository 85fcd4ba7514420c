// palvor-kit view: what the files of a data folder hold.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "kit/commands.h"
#include "kit/record_file.h"
#include "kit/table_printer.h"
#include "kit/tree_drawing.h"
#include "output/divider.h"
#include "output/tree_node.h"
#include "sources/lcp_entry.h"
#include "sources/suffix.h"

namespace kit {
namespace {

struct ViewOptions {
  std::vector<std::string> files;
  bool json = false;
  bool dot = false;
  uint64_t from = 0;
  uint64_t count = UINT64_MAX;
  std::string dataFolder;
};

constexpr uint64_t kBlock = 1 << 16;  // records read at once

// The 16 characters that a packed word holds.
std::string charactersOf(uint32_t word) {
  std::string text;
  for (int shift = 30; shift >= 0; shift -= 2) {
    text += "ACGT"[(word >> shift) & 3];
  }
  return text;
}

// Prints the asked-for slice of a file of records, a row each.
template <typename Record, typename ToCells>
void printRecords(const std::string& path, const ViewOptions& options,
                  std::vector<std::string> columns, ToCells toCells) {
  const RecordFile<Record> file(path);
  TablePrinter printer(std::move(columns), options.json);
  uint64_t next = options.from;
  uint64_t left = options.count;
  while (left > 0) {
    const std::vector<Record> block = file.read(next, std::min(left, kBlock));
    if (block.empty()) return;
    for (const Record& record : block) printer.row(toCells(next++, record));
    left -= block.size();
  }
}

void viewSuffixes(const std::string& path, const ViewOptions& options) {
  printRecords<Suffix>(
      path, options, {"record", "input", "flags", "position", "prefix"},
      [](uint64_t index, const Suffix& suffix) -> std::vector<Cell> {
        return {index, uint64_t{inputNumber(suffix)},
                uint64_t{suffixFlags(suffix)}, uint64_t{suffix.pos},
                charactersOf(suffix.prefix0) + charactersOf(suffix.prefix1)};
      });
}

void viewLcps(const std::string& path, const ViewOptions& options) {
  printRecords<LcpEntry>(
      path, options, {"record", "bits", "firstbit"},
      [](uint64_t index, LcpEntry entry) -> std::vector<Cell> {
        return {index, uint64_t{entry >> 1}, uint64_t{entry & 1}};
      });
}

void viewDividers(const std::string& path, const ViewOptions& options) {
  printRecords<DividerRecord>(
      path, options,
      {"record", "tree", "nodes", "maxdepth", "firstprefix", "lastprefix"},
      [](uint64_t index, const DividerRecord& d) -> std::vector<Cell> {
        return {index,
                uint64_t{static_cast<uint32_t>(d.tree)},
                uint64_t{static_cast<uint32_t>(d.nodes)},
                uint64_t{d.maxDepth},
                charactersOf(d.firstPrefix),
                charactersOf(d.lastPrefix)};
      });
}

void viewTree(const std::string& path, const ViewOptions& options) {
  printRecords<TreeNode>(
      path, options,
      {"record", "kind", "edge", "next", "left", "right", "input", "flags"},
      [](uint64_t index, const TreeNode& node) -> std::vector<Cell> {
        const uint64_t next = hasNext(node) ? 1 : 0;
        if (isLeaf(node)) {
          return {index,
                  "leaf",
                  uint64_t{node.edge},
                  next,
                  {},
                  {},
                  uint64_t{node.left >> 2},
                  uint64_t{node.right & 3}};
        }
        return {index,
                "internal",
                uint64_t{node.edge},
                next,
                uint64_t{node.left >> 2},
                uint64_t{node.right >> 2},
                {},
                {}};
      });
}

void viewLengths(const std::string& path, const ViewOptions& options) {
  printRecords<uint32_t>(
      path, options, {"entry", "value"},
      [](uint64_t index, uint32_t value) -> std::vector<Cell> {
        return {index, uint64_t{value}};
      });
}

void viewString(const std::string& path, const ViewOptions& options) {
  printRecords<uint32_t>(
      path, options, {"word", "position", "characters"},
      [](uint64_t index, uint32_t word) -> std::vector<Cell> {
        return {index, 16 * index, charactersOf(word)};
      });
}

using Viewer = void (*)(const std::string&, const ViewOptions&);

constexpr std::pair<std::string_view, Viewer> kViewers[] = {
    {".stpsa", viewSuffixes},     {".stlcp", viewLcps},
    {".stdiv", viewDividers},     {".stree", viewTree},
    {".stlengths", viewLengths},  {".stblengths", viewLengths},
    {".stplengths", viewLengths}, {".stbin", viewString},
};

void view(const ViewOptions& options) {
  for (const std::string& file : options.files) {
    if (options.dot) {
      drawTree(file, options.dataFolder);
      continue;
    }
    const auto* viewer =
        std::find_if(std::begin(kViewers), std::end(kViewers),
                     [&](const auto& v) { return file.ends_with(v.first); });
    if (viewer == std::end(kViewers)) {
      throw std::runtime_error(
          file + ": its name does not end like that of a file of palvor's");
    }
    viewer->second(file, options);
  }
  finishOutput();
}

}  // namespace

void addView(CLI::App& app) {
  auto options = std::make_shared<ViewOptions>();
  CLI::App* command = app.add_subcommand(
      "view",
      "Print what palvor's files hold, as tab-separated text. The end of a "
      "file's name tells its kind: .stpsa .stlcp .stdiv .stree .stlengths "
      ".stblengths .stplengths .stbin. Packed words are shown as 16 "
      "characters, zero bits past the end of a text as A.");
  command->add_option("files", options->files, "files to print")
      ->type_name("FILE")
      ->required();
  CLI::Option* json =
      command->add_flag("--json", options->json, "print JSON lines");
  command->add_option("--from", options->from, "first record to print, from 0")
      ->capture_default_str();
  command->add_option("--count", options->count,
                      "most records to print of each file");
  CLI::Option* dot = command->add_flag(
      "--dot", options->dot, "draw one small .stree file as Graphviz");
  dot->excludes(json);
  command
      ->add_option("--data", options->dataFolder,
                   "data folder, DIR/PREFIX.ST, to label the drawn edges with "
                   "their characters")
      ->type_name("FOLDER")
      ->needs(dot);
  command->callback([options] { view(*options); });
}

}  // namespace kit
