"""A slow, obvious palvor: given the same folder and options, the bytes of
every file that palvor must write and every line that it must print.

It does what palvor does one plain step at a time, without any of the ways in
which palvor is fast, so that the two can be compared byte by byte and counter
by counter. Names are those of palvor's sources. Lengths are in bits unless
they say otherwise.

    model = Model(["data/", "chr", "-a", "-l"])
    model.run()
    model.outputs   # {path: bytes}
    model.log       # the lines of standard error, after the echo and version

Times are printed as 0, and so is the number of page faults. While it merges,
the model checks itself against answers got straight from the definitions
(model_checks.py), so a mistake in it shows without palvor too.
"""

import struct
from collections import namedtuple

import model_checks
from palvor_options import Options
from palvor_trees import Trees

Suffix = namedtuple("Suffix", "input pos prefix0 prefix1")

LCP_BLOCK = 16384  # entries read from a .stlcp file at a time
MAX_RECORDS = 134217727  # of an input buffer: its bytes fit a signed int


def u32s(data):
  """The whole little-endian 32-bit words of data."""
  n = len(data) // 4
  return list(struct.unpack("<%dI" % n, data[:4 * n]))


def contents(path):
  with open(path, "rb") as file:
    return file.read()


class Model:
  """One run. `checked` turns the self-checks off, for inputs that lie."""

  def __init__(self, arguments, checked=True):
    self.options = Options(arguments)
    self.checked = checked
    self.log = []
    self.outputs = {}
    self.memused = 0
    self.merged = []  # every suffix emitted, for the checks
    self.np2 = self.nncmp = self.nlcmp = self.nnac = self.nnrc = 0
    self.nnoc = self.nsuff = self.nlcp = self.llcp = self.maxPath = 0
    self.tsuff = self.tnlcp = self.tllcp = self.tlcmp = self.tncmp = 0
    self.tnrc = self.tnoc = self.tnac = self.tnp2 = self.tngb = 0
    self.tmaxPath = self.maxlcp = self.nmlcp1 = self.nmlcp2 = 0
    self.comLCP = self.currlcp = self.currfbt = 0
    self.ntree = self.nbuff = self.na = 0

  def say(self, line):
    if not self.options.quiet:
      self.log.append("# " + line)

  def allocate(self, count, size):
    self.memused += count * size

  # --- The run, from the options to the last line ---

  def run(self):
    o = self.options
    self.say(o.line())
    if o.Joption is not None:
      self.say("WARNING: J option unimplemented!")
    self.composePaths()
    self.readLengths()
    self.sizeBuffers()
    self.loadBinaryStrings()
    self.allocate(self.k, 4)  # suffixArrayFiles
    self.outputs[self.streePrefix + ".stdiv"] = bytearray()
    self.initBuffs()
    self.initMerge()
    self.say("in buff: %d suffixes, out buff: %d nodes, SS=16 NS=12,"
             "  real 0 ms" % (self.sufBuffSize, self.outBuffSize))
    self.mergeSuffixArrays()
    self.say("Palvor: mem %d bytes, 0 PFs, real 0 ms, lcp 0 ms, "
             "r/w 0/0 ms, time 0 ms" % self.memused)
    if self.checked:
      model_checks.checkMerged(self)

  def composePaths(self):
    o = self.options
    def base(folder, prefix, name):
      return "%s%s.ST/%s" % (folder, prefix, name)
    def given(text, default):
      return default if text is None else text
    indir, prefix = o.inputdir, o.inputfileprefix
    sdir, spfx = given(o.sdir, indir), given(o.spfx, prefix)
    odir, opfx = given(o.odir, indir), given(o.opfx, prefix)
    self.stringBase = base(indir, prefix, prefix)
    # The partitions file lies with the PSAs but bears the inputs' prefix.
    self.plengthsFileName = base(sdir, spfx, prefix) + ".stplengths"
    self.sarrayPrefix = base(sdir, spfx, spfx)
    self.streePrefix = base(odir, opfx, opfx)

  def readLengths(self):
    o = self.options
    lengths = u32s(contents(self.stringBase + ".stlengths"))
    n = len(lengths)
    if o.nmerge and o.nmerge < n:
      n = o.nmerge
    self.ninputs = n
    self.lengths = lengths[:n]
    self.blengths = u32s(contents(self.stringBase + ".stblengths"))[:n]
    try:
      parts = u32s(contents(self.plengthsFileName))
    except FileNotFoundError:
      parts = []
    self.nparts = len(parts)
    # No more entries are read than there are inputs; the others stay 0.
    self.plengths = parts[:n] + [0] * (self.nparts - n)
    self.k = self.nparts or n
    self.allocate(n, 8)
    self.allocate(self.nparts, 4)
    self.say("total length = %.0f, max input size = %d, number of inputs = "
             "%d, number of parts = %d" % (
                 sum(self.lengths), max(self.lengths, default=0), n, self.k))

  def sizeBuffers(self):
    o = self.options
    if o.sBuffSize:
      self.sufBuffSize = o.sBuffSize // 16
    elif self.k:
      self.sufBuffSize = (o.maxSAMem or 300000000) // (16 * self.k)
    else:
      self.sufBuffSize = 0
    self.sufBuffSize = min(self.sufBuffSize, MAX_RECORDS)
    least = 1 if o.sarray else 2
    self.outBuffSize = o.maxNodes or max(
        least, min(max(self.lengths, default=0), 1 << 20))

  def loadBinaryStrings(self):
    """Keeps each input as the text of its bits, '0' and '1'."""
    self.allocate(self.ninputs, 8)
    self.bits = []
    for i, B in enumerate(self.blengths):
      W = ((B - 1) >> 5) + 2
      words = u32s(contents("%s_%d.stbin" % (self.stringBase, i)))[:W]
      assert len(words) == W and words[-1] == 0
      self.bits.append("".join("{:032b}".format(w) for w in words)[:B])
      if not self.options.usemmap:
        self.allocate(W, 4)

  # --- Streams ---

  def initBuffs(self):
    o, k = self.options, self.k
    self.alens = [0] * k
    if o.iorigin:
      self.allocate(k, 4)
      for j in range(1, k):
        # Without partitions, PSA j holds input j alone.
        before = self.plengths[j - 1] if self.nparts else 1
        self.alens[j] = (self.alens[j - 1] + 4 * before) & 0xFFFFFFFF
    self.allocate(k, 8 + 4 + 4 + 4 + 16 * self.sufBuffSize)
    self.sufbs = [[] for _ in range(k)]
    self.sufls = [self.sufBuffSize] * k
    self.sufps = [self.sufBuffSize] * k
    self.sufos = [0] * k
    if o.Manzini:
      self.allocate(k, 8 + 4 + 4 + 4 + 4 * LCP_BLOCK)
      self.lcpbs = [[] for _ in range(k)]
      self.lcpps = [LCP_BLOCK] * k
      self.lcpos = [0] * k

  def getNextSuf(self, j):
    if self.sufps[j] >= self.sufls[j]:
      if self.sufls[j] < self.sufBuffSize:
        return None
      data = contents("%s_%d.stpsa" % (self.sarrayPrefix, j))
      start = 16 * self.sufos[j]
      data = data[start:start + 16 * self.sufBuffSize]
      if not data:
        return None
      words = u32s(data[:len(data) // 16 * 16])
      self.sufbs[j] = [Suffix(*words[i:i + 4])
                       for i in range(0, len(words), 4)]
      n = len(self.sufbs[j])
      self.sufps[j] = 0
      self.sufos[j] += n
      if len(data) < 16 * self.sufBuffSize:
        self.sufls[j] = n
      if n == 0:
        return None
    s = self.sufbs[j][self.sufps[j]]
    self.sufps[j] += 1
    return s._replace(input=(s.input + self.alens[j]) & 0xFFFFFFFF)

  def getNextLCP(self, j):
    if self.lcpps[j] >= LCP_BLOCK:
      data = contents("%s_%d.stlcp" % (self.sarrayPrefix, j))
      start = 4 * self.lcpos[j]
      self.lcpbs[j] = u32s(data[start:start + 4 * LCP_BLOCK])
      self.lcpps[j] = 0
      self.lcpos[j] += len(self.lcpbs[j])
    p = self.lcpps[j]
    self.lcpps[j] += 1
    # Only entry 0 of an empty stream may be missing: nobody looks at it.
    return self.lcpbs[j][p] if p < len(self.lcpbs[j]) else 0

  # --- Comparison ---

  def length(self, s):
    return self.blengths[s.input >> 2] - 2 * s.pos

  def slice(self, i, at):
    """The 32 bits of input i from bit `at`, zeros past its end."""
    return int(self.bits[i][at:at + 32].ljust(32, "0"), 2)

  def comparePrefixes(self, a, b, N):
    """What the prefix words say: (settled, the words that differ or None)."""
    if a.prefix0 != b.prefix0:
      return True, (a.prefix0, b.prefix0, 0)
    if N == 1:
      return True, None
    if a.prefix1 != b.prefix1:
      return True, (a.prefix1, b.prefix1, 1)
    return N == 2, None

  def ZEPCompare(self, a, b, wantLCP, known=0):
    """(1 if a sorts after b, firstbit); sets comLCP if wantLCP. Without
    wantLCP equal suffixes are ordered by input, else neither is after."""
    ia, ib = a.input >> 2, b.input >> 2
    sa, sb = 2 * a.pos, 2 * b.pos
    Ra, Rb = self.length(a), self.length(b)
    M = min(Ra, Rb)
    N = ((M - 1) >> 5) + 1
    skip, settled, differ = 0, False, None
    if not self.options.noprefix:
      if known <= 63:
        settled, differ = self.comparePrefixes(a, b, N)
        self.np2 += settled
        known = 64
      if not settled:
        skip = ((known + sa) & ~31) - sa
        sa, sb, M = sa + skip, sb + skip, M - skip
        N = ((M - 1) >> 5) + 1
    if not settled:
      for w in range(N):
        x, y = self.slice(ia, sa + 32 * w), self.slice(ib, sb + 32 * w)
        self.tngb += 1
        if x != y:
          differ = x, y, w
          break
    if differ:
      x, y, w = differ
      d = 32 * w + 32 - (x ^ y).bit_length()
      if wantLCP:
        self.comLCP = skip + min(d, M)
      return int(x > y), int(d < M)
    if wantLCP:
      self.comLCP = skip + M
      return int(Ra > Rb), 0
    return int((Ra, ia) > (Rb, ib)), 0

  # --- Merge state and ordering ---

  def initMerge(self):
    o, k = self.options, self.k
    self.Suffixes = [None] * k
    self.allocate(k, 8)
    if o.hpflag:
      self.Heap = []  # its length is heapCounter
      self.allocate(k, 4)
    else:
      self.Lfst = -1
      self.LNXT, self.LLCP, self.LOCP = [0] * k, [0] * k, [0] * k
      self.allocate(k, 4 + 4 + 4)
    self.treeBuffSize = self.outBuffSize
    if o.sarray:
      self.suffBuff = bytearray()
      self.lcpfBuff = bytearray()
      self.allocate(self.treeBuffSize, 16 + 4 * o.larray)
    else:
      self.trees = Trees(self)
    for i in range(k):
      self.Suffixes[i] = self.getNextSuf(i)
      if o.Manzini:
        self.getNextLCP(i)
      if self.Suffixes[i] is None:
        continue  # kept out of the ordering
      if o.hpflag:
        self.pushHeap(i)
      else:
        self.addList(i)
      self.nsuff += 1

  def after(self, a, b):
    """One counted comparison of two streams of the heap."""
    self.nncmp += 1
    return self.ZEPCompare(self.Suffixes[a], self.Suffixes[b], False)[0]

  def pushHeap(self, i):
    Heap = self.Heap
    pos = len(Heap)
    Heap.append(i)
    while pos > 0:
      parent = (pos - 1) // 2
      if not self.after(Heap[parent], i):
        break
      Heap[pos], Heap[parent] = Heap[parent], i
      pos = parent

  def adjHeap(self, more):
    Heap = self.Heap
    if not more:
      last = Heap.pop()
      if Heap:
        Heap[0] = last
    if len(Heap) < 2:
      return
    x, p, c = Heap[0], 0, 1
    while c < len(Heap):
      chosen = c
      if c + 1 < len(Heap) and self.after(Heap[c], Heap[c + 1]):
        chosen = c + 1
      if not self.after(x, Heap[chosen]):
        break
      Heap[p], Heap[chosen] = Heap[chosen], x
      p, c = chosen, 2 * chosen + 1

  def addList(self, k):
    LLCP, LNXT = self.LLCP, self.LNXT
    if k == -1:
      self.Lfst = LNXT[self.Lfst] if self.Lfst >= 0 else -1
      return
    L, f = self.currlcp, self.currfbt
    if self.Lfst == -1:
      self.Lfst, LNXT[k] = k, -1
      return
    cur, prev = self.Lfst, -1
    while cur != -1:
      self.nlcmp += 1
      lc = LLCP[cur] >> 1
      if L > lc:
        LLCP[k] = L << 1 | f
        break
      if L == lc:
        r, fb = self.ZEPCompare(self.Suffixes[cur], self.Suffixes[k], True, L)
        c = self.comLCP
        self.nncmp += 1
        self.nnac += c >= 64
        self.nnrc += c >= L + 64
        self.nnoc += self.LOCP[cur] == LLCP[cur]
        if r:
          LLCP[k] = LLCP[cur]
          LLCP[cur] = c << 1 | fb
          break
        L, f = c, fb
      prev, cur = cur, LNXT[cur]
    else:
      LLCP[k] = L << 1 | f
    LNXT[k] = cur
    if prev == -1:
      self.Lfst = k
    else:
      LNXT[prev] = k

  # --- Merge loop ---

  def mergeSuffixArrays(self):
    o = self.options
    lastSuffix = None
    while self.Heap if o.hpflag else self.Lfst >= 0:
      k = self.Heap[0] if o.hpflag else self.Lfst
      currSuffix = self.Suffixes[k]
      entry = 0 if o.hpflag else self.LLCP[k]
      self.merged.append(currSuffix)
      if self.checked and not o.hpflag:
        model_checks.checkEntry(self, entry, lastSuffix, currSuffix)
      if o.sarray:
        self.emitToArray(currSuffix, entry)
      else:
        self.emitToTree(currSuffix, entry, lastSuffix)
      self.refill(k, currSuffix)
      lastSuffix = currSuffix
      if not o.sarray and self.trees.nnode > self.treeBuffSize - 2:
        self.trees.closeTree(lastSuffix)
    if o.sarray:
      self.flushArray()
    elif self.trees.nnode > 1:
      self.trees.closeTree(lastSuffix)
    self.say("Merge done: %.0f, %d ST%s, tnp2=%.0f tlcmp=%.0f tncmp=%.0f "
             "tnrc=%.0f/%.0f tnac=%.0f" % (
                 self.tsuff, self.ntree, "s" if self.ntree != 1 else "",
                 self.tnp2, self.tlcmp, self.tncmp, self.tnrc, self.tnoc,
                 self.tnac))
    alcp = int(self.tllcp / self.tnlcp) if self.tnlcp else 0
    self.say("  maxp=%d tnlcp=%.0f alcp=%d maxlcp=%d nmlcp=%d/%d  tngb=%.0f"
             % (self.tmaxPath, self.tnlcp, alcp, self.maxlcp, self.nmlcp1,
                self.nmlcp2, self.tngb))

  def emitToArray(self, s, entry):
    if self.nbuff >= self.treeBuffSize:
      self.flushArray()
    if self.options.larray:
      self.lcpfBuff += struct.pack("<I", entry)
    self.suffBuff += struct.pack("<4I", *s)
    self.nbuff += 1

  def emitToTree(self, s, entry, lastSuffix):
    if self.trees.nnode == 1:
      self.trees.insertFirst(s)
      return
    lcp, fb = entry >> 1, entry & 1
    if self.options.hpflag:
      fb = self.ZEPCompare(lastSuffix, s, True)[1]
      lcp = self.comLCP
    self.nmlcp1 += lcp > 255
    self.nmlcp2 += lcp >= 32768
    self.maxlcp = max(self.maxlcp, lcp)
    self.llcp += lcp
    self.nlcp += 1
    self.trees.insert(s, lcp, fb)

  def refill(self, k, currSuffix):
    o = self.options
    s = self.Suffixes[k] = self.getNextSuf(k)
    if s is not None:
      self.nsuff += 1
    if o.hpflag:
      self.adjHeap(s is not None)
      return
    if s is not None:
      if o.Manzini:
        e = self.getNextLCP(k)
        self.currlcp, self.currfbt = e >> 1, e & 1
      else:
        self.currfbt = self.ZEPCompare(currSuffix, s, True)[1]
        self.currlcp = self.comLCP
      self.LLCP[k] = self.LOCP[k] = self.currlcp << 1 | self.currfbt
    self.addList(-1)
    if s is not None:
      self.addList(k)

  def rollUp(self):
    """Adds the counters of a flush to the run's totals and zeroes them."""
    for counter, total in (
        ("nsuff", "tsuff"), ("nlcp", "tnlcp"), ("llcp", "tllcp"),
        ("nlcmp", "tlcmp"), ("nncmp", "tncmp"), ("np2", "tnp2"),
        ("nnac", "tnac"), ("nnrc", "tnrc"), ("nnoc", "tnoc")):
      setattr(self, total, getattr(self, total) + getattr(self, counter))
      setattr(self, counter, 0)
    self.tmaxPath = max(self.tmaxPath, self.maxPath)
    self.maxPath = 0

  def flushArray(self):
    self.rollUp()
    self.outputs.setdefault(self.streePrefix + ".stpsa",
                            bytearray()).extend(self.suffBuff)
    if self.options.larray:
      self.outputs.setdefault(self.streePrefix + ".stlcp",
                              bytearray()).extend(self.lcpfBuff)
    self.say("Flush array %3d: nbuff=%d t=0 ms" % (self.na, self.nbuff))
    self.suffBuff.clear()
    self.lcpfBuff.clear()
    self.nbuff = 0
    self.na += 1
