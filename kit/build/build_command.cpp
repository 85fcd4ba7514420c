// The command lines of palvor-kit build and add.

#include <fmt/format.h>

#include <memory>
#include <string>

#include "kit/build/build.h"
#include "kit/build/file_list.h"
#include "kit/commands.h"
#include "kit/memory_option.h"
#include "kit/shell_word.h"
#include "kit/strands_option.h"

namespace kit {
namespace {

// Options of both, as they were given.
struct Given {
  BuildOptions options;
  std::string list;
  bool noCheck = false;
};

void addFiles(CLI::App& command, Given& given) {
  CLI::Option* files =
      command
          .add_option("files", given.options.files,
                      "sequence files, FASTA or FASTQ, plain or compressed")
          ->type_name("FASTA");
  command
      .add_option("--list", given.list,
                  "a file that names the sequence files, one a line")
      ->type_name("FILE")
      ->excludes(files);
}

void addMeans(CLI::App& command, Given& given) {
  command
      .add_option("-j,--jobs", given.options.jobs,
                  "threads that share the work; all cores if not given")
      ->check(CLI::Range(1, 1024));
  addMemoryOption(command, given.options.memory,
                  "memory to do with, such as 8G; half of what there is, if "
                  "not given");
  command.add_flag("--no-check", given.noCheck, "do not prove the result");
  command.add_flag("--restart", given.options.restart,
                   "keep nothing of an interrupted run or an older result");
  command.add_flag("-q,--quiet", given.options.quiet,
                   "say nothing but what goes wrong");
}

// The options as they are to be run; `start` begins the recorded command.
BuildOptions finished(const Given& given, const std::string& start) {
  BuildOptions options = given.options;
  options.check = !given.noCheck;
  options.command = start;
  if (options.jobs != 0) options.command += fmt::format(" -j {}", options.jobs);
  if (options.memory != 0) {
    options.command += fmt::format(" --memory {}", options.memory);
  }
  if (given.noCheck) options.command += " --no-check";
  if (!given.list.empty()) {
    options.files = readFileList(given.list);
    options.command += " --list " + shellWord(given.list);
    return options;
  }
  for (const std::string& file : options.files) {
    options.command += " " + shellWord(file);
  }
  return options;
}

}  // namespace

void addBuild(CLI::App& app) {
  auto given = std::make_shared<Given>();
  given->options.result = "result";
  CLI::App* command = app.add_subcommand(
      "build",
      "Make a proved result of sequence files, all in one: prepare, merge, sum "
      "up, check. It is whole or not there; an interrupted run is gone on "
      "with.");
  command
      ->add_option("-o,--output", given->options.result,
                   "folder that is to be made")
      ->type_name("DIR")
      ->capture_default_str();
  addFiles(*command, *given);
  CLI::Option* trees =
      command->add_flag("--trees", given->options.trees,
                        "make suffix tree partitions instead of an array");
  command
      ->add_flag_callback(
          "--array", [given] { given->options.trees = false; },
          "make a suffix array with its LCP array, as if not told")
      ->excludes(trees);
  addStrands(*command, given->options.bothStrands);
  addMeans(*command, *given);
  command->callback([given] {
    const BuildOptions& options = given->options;
    build(finished(*given, "palvor-kit build -o " + shellWord(options.result) +
                               (options.trees ? " --trees" : "") +
                               (options.bothStrands ? " --strands both" : "")));
  });
}

void addAdd(CLI::App& app) {
  auto given = std::make_shared<Given>();
  CLI::App* command = app.add_subcommand(
      "add",
      "Add sequence files to a result of build, without preparing the others "
      "again. The new result takes the old one's place when it is whole.");
  command->add_option("result", given->options.result, "the result's folder")
      ->type_name("DIR")
      ->required();
  addFiles(*command, *given);
  addMeans(*command, *given);
  command->callback([given] {
    addTo(
        finished(*given, "palvor-kit add " + shellWord(given->options.result)));
  });
}

}  // namespace kit
