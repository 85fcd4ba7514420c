#include "kit/answers/export.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "kit/answers/merged_array.h"
#include "kit/answers/merged_inputs.h"
#include "kit/answers/merged_strings.h"
#include "kit/answers/suffix_rows.h"
#include "kit/standard_output.h"

namespace kit {
namespace {

constexpr size_t kAhead = 24;  // rows whose strings are asked for early

// The characters before the rows' suffixes.
class BwtWriter {
 public:
  BwtWriter(const MergedInputs& inputs, char terminator)
      : strings_(inputs), terminator_(terminator) {}

  void take(std::span<const SuffixRow> rows) {
    text_.resize(rows.size());
    for (size_t i = 0; i < rows.size(); i++) {
      if (i + kAhead < rows.size() && rows[i + kAhead].pos > 0) {
        strings_.prefetch(rows[i + kAhead].input, rows[i + kAhead].pos - 1);
      }
      const SuffixRow& row = rows[i];
      text_[i] = row.pos == 0 ? terminator_
                              : "ACGT"[strings_.code(row.input, row.pos - 1)];
    }
    writeOutput(text_);
  }

 private:
  MergedStrings strings_;
  char terminator_;
  std::string text_;
};

// Numbers of so many bytes, the lowest first.
class NumberWriter {
 public:
  explicit NumberWriter(size_t width) : width_(width) {}

  template <typename NumberOf>
  void take(std::span<const SuffixRow> rows, NumberOf numberOf) {
    bytes_.resize(rows.size() * width_);
    for (size_t i = 0; i < rows.size(); i++) {
      const uint64_t number = numberOf(rows[i]);
      std::memcpy(bytes_.data() + i * width_, &number, width_);
    }
    writeOutput(bytes_);
  }

 private:
  size_t width_;
  std::string bytes_;
};

// Where each input begins, with a terminator after each; and the end of all.
std::vector<uint64_t> beginsOf(const MergedInputs& inputs) {
  std::vector<uint64_t> begins = {0};
  for (const uint32_t length : inputs.lengths()) {
    begins.push_back(begins.back() + length + 1);
  }
  return begins;
}

uint64_t largestNumber(const ExportOptions& options,
                       const MergedInputs& inputs) {
  if (options.array == ExportedArray::kSa) return beginsOf(inputs).back();
  if (options.array == ExportedArray::kDa) return inputs.count();
  const auto& lengths = inputs.lengths();
  return lengths.empty() ? 0
                         : *std::max_element(lengths.begin(), lengths.end());
}

// The header of a one-dimensional array, 64 bytes or a multiple of that.
std::string npyHeader(int width, uint64_t count) {
  std::string description = fmt::format(
      "{{'descr': '<u{}', 'fortran_order': False, 'shape': ({},), "
      "}}",
      width, count);
  const size_t before = 10;  // magic, version and length
  const size_t size = (before + description.size() + 1 + 63) / 64 * 64;
  description.resize(size - before - 1, ' ');
  description += '\n';
  const auto length = static_cast<uint16_t>(description.size());
  std::string header("\x93NUMPY\x01\x00", 8);
  header.append(reinterpret_cast<const char*>(&length), 2);
  return header + description;
}

void testOptions(const ExportOptions& options, const MergedInputs& inputs) {
  const bool bwt = options.array == ExportedArray::kBwt;
  if (options.npy && bwt) {
    throw std::runtime_error("--npy is for numbers, and the bwt has none");
  }
  if (options.newline && !bwt) {
    throw std::runtime_error("--newline is for the bwt");
  }
  if (options.npy && options.width == 5) {
    throw std::runtime_error("numpy has no numbers of 5 bytes");
  }
  if (bwt) return;
  const uint64_t largest = largestNumber(options, inputs);
  if (options.width < 8 && largest >> (8 * options.width) != 0) {
    throw std::runtime_error(
        fmt::format("numbers up to {} do not fit into {} bytes (see --width)",
                    largest, options.width));
  }
}

void writeRows(const MergedArray& array, const MergedInputs& inputs,
               const SuffixRows::Take& take) {
  SuffixRows rows(inputs, take);
  array.pass("exporting", takenBy(rows));
  rows.finish();
}

}  // namespace

void exportArray(const ExportOptions& options) {
  const MergedInputs inputs(options.merged.dataBase(), options.merged.nmerge);
  testOptions(options, inputs);
  const MergedArray array(inputs, options.merged.mergedBase());
  if (options.array == ExportedArray::kBwt) {
    BwtWriter writer(inputs, options.newline ? '\n' : '$');
    writeRows(array, inputs,
              [&](std::span<const SuffixRow> rows) { writer.take(rows); });
    finishOutput();
    return;
  }
  if (options.npy) {
    writeOutput(npyHeader(options.width, array.size() + inputs.count()));
  }
  const std::vector<uint64_t> begins = beginsOf(inputs);
  NumberWriter writer(static_cast<size_t>(options.width));
  writeRows(array, inputs, [&](std::span<const SuffixRow> rows) {
    switch (options.array) {
      case ExportedArray::kSa:
        writer.take(rows, [&](const SuffixRow& row) {
          return begins[row.input] + row.pos;
        });
        break;
      case ExportedArray::kLcp:
        writer.take(rows,
                    [](const SuffixRow& row) { return uint64_t{row.common}; });
        break;
      default:
        writer.take(rows,
                    [](const SuffixRow& row) { return uint64_t{row.input}; });
    }
  });
  finishOutput();
}

}  // namespace kit
