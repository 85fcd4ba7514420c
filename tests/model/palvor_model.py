"""A slow, obvious palvor: given the same folder and options, the bytes of
every file that palvor must write and every line that it must print.

It does what palvor does one plain step at a time, without any of the ways in
which palvor is fast, so that the two can be compared byte by byte and counter
by counter. What suffixes share it takes from their texts, and only counts
what palvor has to read to know it. Names are those of palvor's sources.
Lengths are in bits unless they say otherwise.

    model = Model(["data/", "chr", "-a", "-l"])
    model.run()
    model.outputs   # {path: bytes}
    model.log       # the lines of standard error, after the echo and version

Times are printed as 0, and so is the number of page faults. A run checks its
results against the definitions (model_checks.py), so a mistake in the model
shows without palvor too. Inputs have to be as they should be.
"""

from collections import Counter, namedtuple

import model_checks
from data_folder import lcp_entry, packed, unpacked
from palvor_options import Options
from palvor_orderings import mergeByHeap, mergeByList
from palvor_trees import MAX_PATHLEN, Trees

Suffix = namedtuple("Suffix", "input pos prefix0 prefix1")

LCP_BLOCK = 16384  # entries read from a .stlcp file at a time
MAX_RECORDS = 134217727  # of an input buffer: its bytes fit a signed int


def contents(path):
    """The whole words of a file."""
    with open(path, "rb") as file:
        return unpacked(file.read())


class Model:
    """One run."""

    def __init__(self, arguments):
        self.options = Options(arguments)
        self.log = []
        self.outputs = {}
        self.merged = []  # every (suffix, LCP entry) emitted
        self.count = Counter()  # of the whole run
        self.maxPath = self.maxlcp = self.ntree = 0

    def say(self, line):
        if not self.options.quiet:
            self.log.append("# " + line)

    def run(self):
        o = self.options
        self.say(o.line())
        if o.Joption is not None:
            self.say("WARNING: J option unimplemented!")
        self.composePaths()
        self.readLengths()
        self.sizeBuffers()
        self.readStrings()
        self.readStreams()
        self.say(f"in buff: {self.sufBuffSize} suffixes, "
                 f"out buff: {self.outBuffSize} nodes, SS=16 NS=12,"
                 "  real 0 ms")
        merge = mergeByHeap if o.hpflag else mergeByList
        self.merged = list(merge(self))
        self.outputs[self.streePrefix + ".stdiv"] = b""
        if o.sarray:
            self.writeArray()
        else:
            Trees(self).write()
        self.sayCounters()
        self.say(f"Palvor: mem {self.memory()} bytes, 0 PFs, real 0 ms, "
                 "lcp 0 ms, r/w 0/0 ms, time 0 ms")
        model_checks.checkMerged(self)

    # --- Before the merge ---

    def composePaths(self):
        o = self.options
        prefix = o.inputfileprefix
        sdir, spfx = o.sdir or o.inputdir, o.spfx or prefix
        odir, opfx = o.odir or o.inputdir, o.opfx or prefix
        self.stringBase = f"{o.inputdir}{prefix}.ST/{prefix}"
        # The partitions file lies with the PSAs but bears the inputs' prefix.
        self.plengthsFileName = f"{sdir}{spfx}.ST/{prefix}.stplengths"
        self.sarrayPrefix = f"{sdir}{spfx}.ST/{spfx}"
        self.streePrefix = f"{odir}{opfx}.ST/{opfx}"

    def readLengths(self):
        most = self.options.nmerge or None
        self.lengths = contents(self.stringBase + ".stlengths")[:most]
        self.ninputs = len(self.lengths)
        self.blengths = contents(
            self.stringBase + ".stblengths")[:self.ninputs]
        try:
            self.plengths = contents(self.plengthsFileName)
        except FileNotFoundError:
            self.plengths = []
        self.k = len(self.plengths) or self.ninputs
        self.longest = max(self.lengths, default=0)
        self.say(f"total length = {sum(self.lengths)}, "
                 f"max input size = {self.longest}, "
                 f"number of inputs = {self.ninputs}, "
                 f"number of parts = {self.k}")

    def sizeBuffers(self):
        o = self.options
        budget = o.sBuffSize
        if not budget and self.k:
            budget = (o.maxSAMem or 300000000) // self.k
        self.sufBuffSize = min(budget // 16, MAX_RECORDS)
        least = 1 if o.sarray else 2
        self.outBuffSize = o.maxNodes or max(least, min(self.longest, 1 << 20))

    def readStrings(self):
        """Keeps each input as the text of its bits, '0' and '1'."""
        self.bits = []
        for i, length in enumerate(self.blengths):
            words = contents(f"{self.stringBase}_{i}.stbin")
            self.bits.append("".join(f"{w:032b}" for w in words)[:length])

    def readStreams(self):
        """The suffixes of each PSA by the inputs' numbers, its LCP entries."""
        self.suffixes, self.entries = [], []
        for j in range(self.k):
            origin = 0
            if self.options.iorigin:
                # Without partitions, PSA j holds input j alone.
                origin = sum(self.plengths[:j]) if self.plengths else j
            words = iter(contents(f"{self.sarrayPrefix}_{j}.stpsa"))
            records = zip(words, words, words, words)
            self.suffixes.append([Suffix(first + 4 * origin, *rest)
                                  for first, *rest in records])
            if self.options.Manzini:
                self.entries.append(contents(f"{self.sarrayPrefix}_{j}.stlcp"))

    def memory(self):
        """The bytes of all tables that palvor asks for."""
        o, n, k = self.options, self.ninputs, self.k
        strings = sum((B + 31) // 32 + 1 for B in self.blengths)  # words
        of_input = 8 + 8  # its lengths, where its string lies
        # The file; the buffer with its place, end and offset; the suffix.
        of_stream = 4 + (20 + 16 * self.sufBuffSize) + 8
        if o.iorigin:
            of_stream += 4
        if o.Manzini:
            of_stream += 20 + 4 * LCP_BLOCK
        of_stream += 4 if o.hpflag else 12
        if o.sarray:
            output = self.outBuffSize * (16 + 4 * o.larray)
        else:
            output = self.outBuffSize * 12 * (1 + o.reorder) + MAX_PATHLEN * 16
        return (n * of_input + 4 * len(self.plengths) + k * of_stream +
                (0 if o.usemmap else 4 * strings) + output)

    # --- Comparison ---

    def text(self, s):
        """The bits of a suffix."""
        return self.bits[s.input >> 2][2 * s.pos:]

    def length(self, s):
        return self.blengths[s.input >> 2] - 2 * s.pos

    def ZEPCompare(self, a, b, known=0):
        """The LCP entry of two suffixes that share `known` bits; counts what
        palvor reads for it."""
        entry = lcp_entry(self.text(a), self.text(b))
        # The last bit to be looked at.
        last = min(entry >> 1, self.length(a) - 1, self.length(b) - 1)
        skip = 0
        if not self.options.noprefix:
            if known < 64:
                if last < 64:
                    self.count["np2"] += 1  # the prefix words tell
                    return entry
                known = 64
            skip = (known + 2 * a.pos) // 32 * 32 - 2 * a.pos
        self.count["ngb"] += (last - skip) // 32 + 1
        return entry

    # --- After the merge ---

    def writeArray(self):
        size, count = self.outBuffSize, len(self.merged)
        self.outputs[self.streePrefix + ".stpsa"] = b"".join(
            packed(suffix) for suffix, _ in self.merged)
        if self.options.larray:
            self.outputs[self.streePrefix + ".stlcp"] = packed(
                [entry for _, entry in self.merged])
        # A run without suffixes flushes once too.
        for flush, first in enumerate(range(0, max(count, 1), size)):
            self.say(f"Flush array {flush:3d}: "
                     f"nbuff={min(size, count - first)} t=0 ms")

    def sayCounters(self):
        count = self.count
        alcp = count["llcp"] // max(count["nlcp"], 1)
        trees = f"{self.ntree} ST" + "s" * (self.ntree != 1)
        self.say(f"Merge done: {count['nsuff']}, {trees}, "
                 f"tnp2={count['np2']} tlcmp={count['nlcmp']} "
                 f"tncmp={count['nncmp']} "
                 f"tnrc={count['nnrc']}/{count['nnoc']} "
                 f"tnac={count['nnac']}")
        self.say(f"  maxp={self.maxPath} tnlcp={count['nlcp']} alcp={alcp} "
                 f"maxlcp={self.maxlcp} "
                 f"nmlcp={count['nmlcp1']}/{count['nmlcp2']}  "
                 f"tngb={count['ngb']}")
