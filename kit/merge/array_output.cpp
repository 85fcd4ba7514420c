#include "kit/merge/array_output.h"

#include <fmt/format.h>

#include "kit/file_error.h"
#include "kit/folders.h"
#include "kit/record_file.h"
#include "kit/records.h"

namespace kit {

ArrayOutput::ArrayOutput(const std::string& output, uint64_t suffixes)
    : output_(output),
      dividers_(output + ".stdiv"),
      suffixes_(output + ".stpsa"),
      entries_(output + ".stlcp") {
  suffixes_.allocate(sizeof(Suffix) * suffixes);
  entries_.allocate(sizeof(LcpEntry) * suffixes);
}

void ArrayOutput::commit() {
  // The array comes last: without it there is no result.
  removeFile(output_ + ".stpsa");
  removeFile(output_ + ".stlcp");
  removeTrees(output_);
  dividers_.commit();
  entries_.commit();
  suffixes_.commit();
}

void removeTrees(const std::string& output) {
  removeFile(output + ".stdiv");
  for (int t = 0; isThere(fmt::format("{}_{}.stree", output, t)); t++) {
    removeFile(fmt::format("{}_{}.stree", output, t));
  }
}

}  // namespace kit
