// What the commands that merge take alike.

#include "kit/merge/merge_options.h"

#include "kit/jobs_option.h"
#include "kit/memory_option.h"

namespace kit {

void addMergePlaces(CLI::App& command, MergePlaces& places) {
  command
      .add_option("inputdir", places.inputdir,
                  "directory of the data folder, as prepare's DIR, or a result "
                  "of build in place of both")
      ->required();
  command.add_option("prefix", places.prefix, "name of the data folder")
      ->required();
  command.add_option("-o", places.odir, "output folder, as palvor's -o");
  command.add_option("-p", places.opfx, "output prefix, as palvor's -p");
  command.add_option("-S", places.sdir,
                     "folder of the suffix arrays, as palvor's -S");
  command.add_option("-s", places.spfx,
                     "prefix of the suffix arrays, as palvor's -s");
  command.add_flag("-z", places.zeroOrigin,
                   "inputs are numbered from zero in every suffix array");
  command.add_flag("-Z", places.readLcps,
                   "read common prefixes from .stlcp files");
}

void addMergeMeans(CLI::App& command, MergeMeans& means) {
  addJobs(command, means.jobs);
  addMemoryOption(command, means.memory, "memory to do with, such as 8G");
}

}  // namespace kit
