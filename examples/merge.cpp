// Merges the arrays of two data folders at once, and counts in each what
// repeats: suffixes that share 50 characters or more with the one before them.
//
//   merge FOLDER1 PREFIX1 FOLDER2 PREFIX2
//
// Each folder is what palvor-kit prepare wrote, with its trailing "/".

#include <palvor/merge.h>
#include <palvor/sink/batch_sink.h>

#include <cstdio>
#include <thread>

namespace {

void countRepeats(const char* folder, const char* prefix) try {
  palvor::MergeOptions options;
  options.input = options.arrays = {folder, prefix};
  long long repeats = 0;
  palvor::BatchSink sink([&](auto, std::span<const palvor::LcpEntry> entries) {
    for (const palvor::LcpEntry entry : entries) {
      if (palvor::lcpBits(entry) >= 2 * 50) repeats++;
    }
  });
  palvor::MergeObserver silent;
  const palvor::MergeReport report = palvor::merge(options, sink, silent);
  std::printf("%s%s: %lld of %lld suffixes\n", folder, prefix, repeats,
              static_cast<long long>(report.suffixes));
} catch (const palvor::Error& error) {
  std::fprintf(stderr, "%s %s: %s\n", error.file().c_str(),
               error.reason().c_str(), error.what());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 1;
  std::thread first(countRepeats, argv[1], argv[2]);
  countRepeats(argv[3], argv[4]);
  first.join();
}
