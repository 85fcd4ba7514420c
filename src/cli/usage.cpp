#include "cli/usage.h"

#include "cli/report.h"

namespace cli {
namespace {

constexpr const char* kUsage[] = {
    "\t-o <s> \t# use folder <s> for output, rather than input directory\n",
    "\t-p <s> \t# use prefix <s> for output files, rather than input file "
    "prefix\n",
    "\t-S <s> \t# use folder <s> for input suffix array files\n",
    "\t-s <s> \t# use prefix <s> for input suffix array files\n",
    "\t-J <s> \t# indexes of relevance, eg. \"-J 1-4,6\" (unimplemented)\n",
    "\t-m <n> \t# memory to be used for all Suffix input buffers (bytes)\n",
    "\t-M <n> \t# memory to be used per Suffix input buffer (bytes)\n",
    "\t-n <n> \t# max number of nodes per tree partition\n",
    "\t-i <n> \t# max iterations, in words, for suffix comparisons\n",
    "\t-x <n> \t# partition trees based on prefix of length n [1..16]\n",
    "\t-N <n> \t# number-to-merge - merge only the first <n> SAs\n",
    "\t-c\t# checks (sometimes slow, sometimes paranoid) for correctness\n",
    "\t-q\t# quiet - no output to stderr\n",
    "\t-v\t# verbose - lots of output to stderr\n",
    "\t-a\t# array - make suffix array output, rather than suffix tree\n",
    "\t-l\t# lcp array - make lcp array output (use only with -a)\n",
    "\t-b\t# big suffixes - read suffix arrays with bigger records, incl. "
    "LCP\n",
    "\t-w\t# ZEP - use Tavo's version of compare() (deprecated)\n",
    "\t-X\t# no prefixes - completely avoid use of the suffix prefixes\n",
    "\t-L\t# List - do not use a Heap for the merge (deprecated)\n",
    "\t-H\t# Heap - use the original Heap for the merge\n",
    "\t-Z\t# Manzini - (try to) use externally generated LCP values\n",
    "\t-f\t# file pointers - open a file for each input suffix array\n",
    "\t-z\t# zero index origin - PSAs have inputs numbered from zero.\n",
    "\t-U\t# Use mmap for input strings\n",
    "\t-R\t# Re-order - put nodes in traversal order, for better "
    "compaction\n",
    "\t-C\t# Compact - compress trees using hash sets etc.\n",
    "\t-h\t# help - print this message\n",
    "Generates <n> .stree (\"suffix tree\") files, and one .stdiv file.\n",
    "Uses <k> .stbin and .stpsa files, plus the .*lengths files.\n",
};

}  // namespace

void sayUsage(const char* name) {
  say("%s <inputdir> <inputfileprefix> [-options...]\n", name);
  for (const char* line : kUsage) say("%s", line);
}

const char* version() { return __DATE__ " " __TIME__; }

}  // namespace cli
