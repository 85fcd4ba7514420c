#include "kit/view/view.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "kit/file_error.h"
#include "kit/input_table.h"
#include "kit/record_file.h"
#include "kit/records.h"
#include "kit/standard_output.h"
#include "kit/table_fields.h"
#include "kit/table_printer.h"
#include "kit/view/genome_names.h"
#include "kit/view/tree_drawing.h"

namespace kit {
namespace {

constexpr uint64_t kBlock = 1 << 16;  // records read at once

using Cells = std::vector<Cell>;

// The 16 or 32 characters that a word of 32 or 64 bits holds.
template <typename Word>
std::string charactersOf(Word word) {
  std::string text(4 * sizeof(Word), 'A');
  for (size_t i = text.size(); i-- > 0; word >>= 2) text[i] = "ACGT"[word & 3];
  return text;
}

// One file to print, and how.
class FileView {
 public:
  FileView(const std::string& path, const ViewOptions& options)
      : path_(path), options_(options), names_(options.dataFolder, path) {}

  void suffixes() const {
    std::vector<std::string> columns = {"record", "input", "flags", "position",
                                        "prefix"};
    const auto array = numberInName(path_, ".stpsa");
    const uint64_t origin =
        options_.zeroOrigin && array ? names_.firstInput(*array) : 0;
    addColumns(columns, {"genome", "sequence", "start", "strand"});
    printRecords<Suffix>(columns, [&](uint64_t index, const Suffix& suffix) {
      const uint64_t input = inputNumber(suffix);
      Cells cells = {index, input, uint64_t{suffixFlags(suffix)},
                     uint64_t{suffix.pos}, charactersOf(prefixBits(suffix))};
      addPlace(cells, origin + input, suffix.pos);
      return cells;
    });
  }

  void lcps() const {
    printRecords<LcpEntry>({"record", "bits", "characters", "firstbit"},
                           [](uint64_t index, LcpEntry entry) -> Cells {
                             return {index, uint64_t{entry >> 1},
                                     uint64_t{lcpCharacters(entry)},
                                     uint64_t{entry & 1}};
                           });
  }

  void dividers() const {
    printRecords<DividerRecord>(
        {"record", "tree", "nodes", "maxdepth", "firstprefix", "lastprefix"},
        [](uint64_t index, const DividerRecord& d) -> Cells {
          return {index,
                  uint64_t{static_cast<uint32_t>(d.tree)},
                  uint64_t{static_cast<uint32_t>(d.nodes)},
                  uint64_t{d.maxDepth},
                  charactersOf(d.firstPrefix),
                  charactersOf(d.lastPrefix)};
        });
  }

  void tree() const {
    std::vector<std::string> columns = {"record", "kind",  "edge",  "next",
                                        "left",   "right", "input", "flags"};
    addColumns(columns, {"genome", "sequence"});
    printRecords<TreeNode>(columns, [&](uint64_t index, const TreeNode& node) {
      const uint64_t next = hasNext(node) ? 1 : 0;
      const uint64_t left = node.left >> 2;
      if (!isLeaf(node)) {
        Cells cells = {index, "internal", uint64_t{node.edge},
                       next,  left,       uint64_t{node.right >> 2},
                       {},    {}};
        if (names_.known()) cells.resize(cells.size() + 2);
        return cells;
      }
      Cells cells = {index, "leaf", uint64_t{node.edge},     next, {},
                     {},    left,   uint64_t{node.right & 3}};
      addName(cells, left);
      return cells;
    });
  }

  // The entries of inputs have names, those of partitions have none.
  void inputLengths() const {
    std::vector<std::string> columns = {"entry", "value"};
    addColumns(columns, {"genome", "sequence"});
    printRecords<uint32_t>(columns, [&](uint64_t index, uint32_t value) {
      Cells cells = {index, uint64_t{value}};
      addName(cells, index);
      return cells;
    });
  }

  void partitionLengths() const {
    printRecords<uint32_t>({"entry", "value"},
                           [](uint64_t index, uint32_t value) -> Cells {
                             return {index, uint64_t{value}};
                           });
  }

  void string() const {
    printRecords<uint32_t>({"word", "position", "characters"},
                           [](uint64_t index, uint32_t word) -> Cells {
                             return {index, 16 * index, charactersOf(word)};
                           });
  }

  void inputTable() const {
    const std::vector<InputOrigin> inputs = readInputTable(path_);
    const uint64_t end = sliceEnd(inputs.size());
    TablePrinter printer = table(
        {"input", "array", "genome", "sequence", "offset", "length", "strand"});
    for (uint64_t i = options_.from; i < end; i++) {
      const InputOrigin& input = inputs[i];
      print(printer, {i, input.array, input.file, input.sequence, input.offset,
                      input.length, input.reverse ? "-" : "+"});
    }
  }

  void picture() const { drawTree(path_, options_.dataFolder, names_); }

 private:
  // One past the last record to print, of so many.
  uint64_t sliceEnd(uint64_t size) const {
    if (options_.from > 0 && options_.from >= size) {
      throw FileError(path_, fmt::format("there is no record {}, but only {}",
                                         options_.from, size));
    }
    const uint64_t rest = size - options_.from;
    return options_.from + std::min(options_.count.value_or(rest), rest);
  }

  // The table that is to be printed, its header or, in JSON, each of its
  // objects with the file's name, if there are several.
  TablePrinter table(std::vector<std::string> columns) const {
    if (severalFiles()) {
      if (options_.json) {
        columns.insert(columns.begin(), "file");
      } else {
        const bool first = path_ == options_.files.front();
        writeOutput(fmt::format("{}# {}\n", first ? "" : "\n", escaped(path_)));
      }
    }
    return {std::move(columns), options_.json};
  }

  void print(TablePrinter& printer, Cells cells) const {
    if (severalFiles() && options_.json) cells.insert(cells.begin(), path_);
    printer.row(cells);
  }

  bool severalFiles() const { return options_.files.size() > 1; }

  template <typename Record, typename ToCells>
  void printRecords(std::vector<std::string> columns, ToCells toCells) const {
    const RecordFile<Record> file(path_);
    const uint64_t end = sliceEnd(file.size());
    TablePrinter printer = table(std::move(columns));
    for (uint64_t next = options_.from; next < end;) {
      for (const Record& record :
           file.read(next, std::min(end - next, kBlock))) {
        print(printer, toCells(next++, record));
      }
    }
  }

  // Columns and cells that are there only if the inputs have names.
  void addColumns(std::vector<std::string>& columns,
                  const std::vector<std::string>& more) const {
    if (!names_.known()) return;
    columns.insert(columns.end(), more.begin(), more.end());
  }

  void addName(Cells& cells, uint64_t input) const {
    if (!names_.known()) return;
    const InputOrigin* origin = names_.find(input);
    if (origin == nullptr) {
      cells.resize(cells.size() + 2);
      return;
    }
    cells.emplace_back(origin->file);
    cells.emplace_back(origin->sequence);
  }

  void addPlace(Cells& cells, uint64_t input, uint64_t pos) const {
    if (!names_.known()) return;
    addName(cells, input);
    const InputOrigin* origin = names_.find(input);
    if (origin == nullptr || pos >= origin->length) {
      cells.resize(cells.size() + 2);
      return;
    }
    cells.emplace_back(origin->placeOf(pos));
    cells.emplace_back(std::string(1, origin->reverse ? '-' : '+'));
  }

  const std::string& path_;
  const ViewOptions& options_;
  GenomeNames names_;
};

using Printing = void (FileView::*)() const;

constexpr std::pair<std::string_view, Printing> kKinds[] = {
    {".stpsa", &FileView::suffixes},
    {".stlcp", &FileView::lcps},
    {".stdiv", &FileView::dividers},
    {".stree", &FileView::tree},
    {".stlengths", &FileView::inputLengths},
    {".stblengths", &FileView::inputLengths},
    {".stplengths", &FileView::partitionLengths},
    {".stbin", &FileView::string},
    {".inputs.tsv", &FileView::inputTable},
};

Printing printingOf(const std::string& file) {
  const auto* kind =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&](const auto& k) { return file.ends_with(k.first); });
  if (kind == std::end(kKinds)) {
    throw FileError(file,
                    "its name does not end like that of a file of palvor's");
  }
  return kind->second;
}

}  // namespace

void view(const ViewOptions& options) {
  for (const std::string& file : options.files) {
    if (options.dot && !file.ends_with(".stree")) {
      throw FileError(file, "only trees, .stree files, can be drawn");
    }
    const Printing printing =
        options.dot ? &FileView::picture : printingOf(file);
    (FileView(file, options).*printing)();
  }
  finishOutput();
}

}  // namespace kit
