#!/usr/bin/env python3
"""Writes the first cases of the corpus, from which the fuzzer starts.

    make_corpus.py --palvor build/release/src/palvor [--output tests/fuzz/corpus]

One folder for each target, one file for each case: targets.h and
case_folder.h say what its bytes mean. A case named "accepted..." has to end
with status 0, one named "refused..." with 1, any other with either. Files
that are there already, such as those that the fuzzer found, stay.
"""

import argparse
import bz2
import gzip
import lzma
import os
import struct
import subprocess
import tempfile

KINDS = [".stlengths", ".stblengths", ".stplengths", "_.stbin", "_.stpsa",
         "_.stlcp", ".stpsa", ".stlcp", ".stdiv", "_.stree"]
CODES = {"A": "00", "C": "01", "G": "10", "T": "11"}

# Option bits of the merge targets; LAST is -l or -R.
Z, U, H, F, ORIGIN, Q, X, LAST = (1 << i for i in range(8))
C = 1
ALL, JSON, CHECK_Z, TO_TREES = 1, 2, 4, 8  # of check
VIEW_JSON, DOT, DATA, RANGE = 1, 2, 4, 8  # of view
LCP, ZERO_ORIGIN, PER_RECORD, SKIP, ERROR, TWICE = 1, 2, 4, 8, 16, 32
THEN_TREES = 64                       # of prepare, as those above


def words(values):
  return struct.pack("<%dI" % len(values), *values)


def unpacked(data):
  return list(struct.unpack("<%dI" % (len(data) // 4), data))


def patched(data, index, value):
  """The data with one 32-bit word changed, by a value or a function."""
  changed = unpacked(data)
  old = changed[index]
  changed[index] = (value(old) if callable(value) else value) & 0xFFFFFFFF
  return words(changed) + data[4 * len(changed):]


def string_words(bits):
  return [int(bits[i:i + 32].ljust(32, "0"), 2)
          for i in range(0, len(bits), 32)]


def folder(texts, parts=None, zero_origin=False, keep=None):
  """The files of a data folder by their names without the prefix.

  parts  inputs of each partition; None: one suffix array for each input
  keep   takes an input and a position: whether the suffix is in its array
  """
  bits = ["".join(CODES[c] for c in text) for text in texts]
  files = {".stlengths": words([len(text) for text in texts]),
           ".stblengths": words([len(b) for b in bits])}
  if parts is not None:
    files[".stplengths"] = words(parts)
  for i, b in enumerate(bits):
    files["_%d.stbin" % i] = words(string_words(b) + [0])
  first = 0
  for j, count in enumerate(parts if parts is not None else [1] * len(texts)):
    suffixes = sorted((bits[i][2 * pos:], i, pos)
                      for i in range(first, first + count)
                      for pos in range(len(texts[i]))
                      if keep is None or keep(i, pos))
    origin = first if zero_origin else 0
    files["_%d.stpsa" % j] = b"".join(
        words([(i - origin) << 2 | (pos & 3), pos] +
              string_words(suffix[:64].ljust(64, "0")))
        for suffix, i, pos in suffixes)
    entries = [0] * min(len(suffixes), 1)
    for (a, _, _), (b, _, _) in zip(suffixes, suffixes[1:]):
      shared = len(os.path.commonprefix([a, b]))
      entries.append(shared << 1 | (shared < min(len(a), len(b))))
    files["_%d.stlcp" % j] = words(entries)
    first += count
  return files


def sections(files):
  """The case bytes of a data folder's files."""
  result = b""
  for name, data in files.items():
    stem, ending = name.split(".")
    kind = KINDS.index(("_." if stem else ".") + ending)
    number = int(stem[1:]) if stem else 0
    if number >= 16:
      kind += len(KINDS)
      number -= 16
    for at in range(0, max(len(data), 1), 65535):
      piece = data[at:at + 65535]
      result += struct.pack("<BH", kind << 4 | number, len(piece)) + piece
  return result


class Corpus:
  def __init__(self, palvor, output):
    self.palvor, self.output = palvor, output

  def write(self, target, name, data):
    directory = os.path.join(self.output, target)
    os.makedirs(directory, exist_ok=True)
    with open(os.path.join(directory, name), "wb") as file:
      file.write(bytes(data))

  def merge(self, name, files, flags=0, sizes=0, more=0, tree=True):
    """A case of the merge, for both modes or only for array mode."""
    # What is refused is refused before either mode comes in.
    targets = ["array", "tree"] if tree else ["array"]
    if name.startswith("refused"):
      targets = ["array"]
    if not flags & Z:
      files = {name: data for name, data in files.items()
               if not name.endswith(".stlcp")}
    for target in targets:
      self.write(target, name, bytes([flags, sizes, more]) + sections(files))

  def check(self, name, files, flags=0):
    self.write("check", name, bytes([flags]) + sections(files))

  def view(self, name, files, flags=0, first=0, count=0):
    self.write("view", name, bytes([flags, first, count]) + sections(files))

  def merged(self, files, *options):
    """The files, and what palvor makes of them."""
    with tempfile.TemporaryDirectory() as root:
      place = root + "/x.ST/x"
      os.mkdir(root + "/x.ST")
      for name, data in files.items():
        with open(place + name, "wb") as file:
          file.write(data)
      subprocess.run([self.palvor, root + "/", "x", "-q", *options],
                     check=True, stderr=subprocess.DEVNULL)
      result = dict(files)
      for name in sorted(os.listdir(root + "/x.ST")):
        if name[1:] not in result:
          with open(root + "/x.ST/" + name, "rb") as file:
            result[name[1:]] = file.read()
      return result


def changed(files, name, value):
  """The files with one changed, or left out (None)."""
  result = dict(files)
  if value is None:
    del result[name]
  else:
    result[name] = value(result[name]) if callable(value) else value
  return result


def word_changed(files, name, index, value):
  return changed(files, name, patched(files[name], index, value))


SMALL = folder(["GATTC", "GAT"])
THREE = folder(["GATTACAGATTACAG", "ACGTACGTACGTACGTA", "TTGATTACA"])
LONG = "".join("ACGT"[(i * i + i // 7) % 4] for i in range(1100))


def merge_cases(corpus):
  parts = ["GATTACA", "CAT", "TAGATTACA", "G"]
  equal = ["ACACACACACACACACACACACACACACACACACAC"] * 3
  corpus.merge("accepted-two", SMALL)
  corpus.merge("accepted-one", folder(["GATTACA"]), LAST)
  corpus.merge("accepted-lcp", THREE, Z | LAST, 0x37)
  corpus.merge("accepted-mapped-kept-open", THREE, U | F | LAST, 0x26)
  corpus.merge("accepted-heap", THREE, H | Q, 0x35)
  corpus.merge("accepted-no-prefixes", folder(equal), X | LAST, 0xA0, C)
  corpus.merge("accepted-equal", folder(equal), LAST, 0xA4, C)
  corpus.merge("accepted-equal-lcp", folder(equal), Z | H, 0xA0, C)
  corpus.merge("accepted-equal-list-lcp", folder(equal), Z | LAST, 0xA8)
  corpus.merge("accepted-partitions", folder(parts, [3, 1]), LAST, 0x44)
  corpus.merge("accepted-zero-origin",
               folder(parts, [1, 2, 1], True), ORIGIN | Z, 0x55, C)
  corpus.merge("accepted-five",
               folder(["A", "C" * 16, "G" * 17, "T" * 33, "ACGT" * 8]),
               LAST, 0xD0, C)
  corpus.merge("accepted-capped", THREE, 0, 0x30, 2 << 1, False)
  corpus.merge("accepted-empty-input", folder(["ACGT", "", "CG"]), Z)
  corpus.merge("accepted-no-input", folder([]))
  corpus.merge("accepted-small-budget", THREE, 0, 0xE8, 0, False)
  corpus.merge("accepted-no-buffer", THREE, 0, 0x10)
  long_matches = folder([LONG, LONG[:1090] + "A", "C" + LONG], None, False,
                        lambda i, pos: pos < 3)
  corpus.merge("accepted-long-matches", long_matches, LAST, 0x00, C)
  corpus.merge("accepted-long-matches-no-prefixes", long_matches,
               X | H | LAST, 0x20)

  # Records that are not there.
  psa = "_1.stpsa"
  for name, index, value in [
      ("input", 0, 3 << 2), ("input-huge", 4, 0xFFFFFFFF),
      ("position", 1, 17), ("position-wraps", 1, 0x80000000)]:
    corpus.merge("refused-" + name, word_changed(THREE, psa, index, value),
                 U | F, 0x23)
  corpus.merge("refused-input-by-origin", THREE, ORIGIN)
  corpus.merge("origin-wraps", word_changed(
      folder(parts, [1, 3]), ".stplengths", 0, 0xFFFFFFFF), ORIGIN)
  # A position that is right in its own input, but not in the one named.
  last_place = 4 * unpacked(THREE[psa])[1::4].index(16)
  corpus.merge("refused-position-of-another",
               word_changed(THREE, psa, last_place, 2 << 2))

  # Lies that the merge does not look for.
  for name, index, value in [("prefix", 2, 0xFFFFFFFF),
                             ("second-prefix", 3, 0xFFFFFFFF),
                             ("twice", 5, 0)]:
    case = word_changed(THREE, psa, index, value)
    corpus.merge("lies-" + name, case, LAST, 0x34, C)
  backwards = b"".join(THREE[psa][i:i + 16]
                       for i in reversed(range(0, len(THREE[psa]), 16)))
  for flags, how in [(0, ""), (Z, "-lcp"), (H, "-heap")]:
    corpus.merge("lies-order" + how,
                 changed(THREE, psa, backwards), flags | LAST, 0x38, C)
  # One array, so that each entry relates the suffix to the one before it in
  # the tree. Suffix 5, of 4 characters, follows one of 17 whose prefixes of 5,
  # 9 and 13 are suffixes too.
  one = folder(["ACGTACGTACGTACGTA"])
  for name, index, value in [
      ("longest", 5, 0x7FFFFFFF), ("beyond-branch", 5, 2 * 10 + 1),
      ("beyond-split", 5, 2 * 12 + 1), ("beyond-leaf", 5, 2 * 34 + 1),
      ("whole-suffix", 5, 2 * 8), ("shorter", 4, 0),
      ("firstbit", 5, lambda w: w ^ 1)]:
    corpus.merge("lies-lcp-" + name,
                 word_changed(one, "_0.stlcp", index, value), Z | LAST, 0x3F,
                 C)
  corpus.merge("lies-lcp-ones", changed(
      THREE, "_1.stlcp", lambda d: words([69] * (len(d) // 4))), Z | LAST, 0x30)
  corpus.merge("refused-lcp-bit-31",
               word_changed(THREE, "_1.stlcp", 3, 0x80000001), Z)
  corpus.merge("refused-lcp-short",
               changed(THREE, "_1.stlcp", lambda d: d[:-5]), Z)
  corpus.merge("refused-lcp-missing", changed(THREE, "_2.stlcp", None), Z)

  # Lengths and strings.
  corpus.merge("refused-nothing", {})
  corpus.merge("accepted-lengths-lie",
               changed(THREE, ".stlengths", words([0, 0xFFFFFFFF, 1 << 31])),
               tree=False)
  corpus.merge("refused-more-inputs",
               changed(THREE, ".stlengths", lambda d: d + d))
  corpus.merge("refused-bits-short",
               changed(THREE, ".stblengths", lambda d: d[:-1]))
  for name, value in [("bits-too-many", 0x80000000), ("bits-most", 0x7FFFFFFF),
                      ("bits-beyond", 66)]:
    corpus.merge("refused-" + name,
                 word_changed(THREE, ".stblengths", 1, value))
  corpus.merge("refused-bits-beyond-mapped",
               word_changed(THREE, ".stblengths", 1, 66), U)
  corpus.merge("odd-bits", word_changed(
      THREE, ".stblengths", 1, lambda w: w - 1), X | LAST)
  for flags, how in [(0, ""), (U, "-mapped")]:
    corpus.merge("refused-string-short" + how,
                 changed(THREE, "_1.stbin", lambda d: d[:-3]), flags)
    corpus.merge("trailer" + how,
                 word_changed(THREE, "_1.stbin", -1, 0xFFFFFFFF), flags | X,
                 tree=False)
  corpus.merge("refused-string-empty", changed(THREE, "_0.stbin", b""))
  corpus.merge("padding",
               word_changed(THREE, "_1.stbin", 1, lambda w: w | 0xFFFF), X,
               tree=False)
  corpus.merge("refused-array-missing-kept-open",
               changed(THREE, psa, None), F)
  corpus.merge("accepted-array-short",
               changed(THREE, psa, lambda d: d[:-7]), LAST, 0x30)
  corpus.merge("accepted-array-empty", changed(THREE, psa, b""), Z)

  # More streams than are looked at all at once, alike and not.
  many = folder([("GATTACACATGATTACAGG" * 3)[i % 5:40 + i % 7] + "ACGT"[i % 4]
                 for i in range(20)])
  corpus.merge("accepted-many", many)
  corpus.merge("accepted-many-entries", many, Z)
  corpus.merge("many-lying-entry",
               word_changed(many, "_18.stlcp", 7, lambda w: w + 90), Z)
  corpus.merge("many-not-ascending",
               changed(many, "_17.stpsa", lambda d: d[160:] + d[:160]),
               tree=False)

  # Partitions.
  for name, data, flags in [
      ("byte", b"\1", 0), ("many", words([1] * 300), 0), ("zeros-origin", bytes(12), ORIGIN),
      ("more-origin", words([1] * 5), ORIGIN),
      ("huge-origin", b"\xff" * 12, ORIGIN | Z)]:
    corpus.merge("partitions-" + name,
                 dict(THREE, **{".stplengths": data}), flags, tree=False)
  corpus.merge("refused-capped-partitions", folder(parts, [3, 1]), 0, 0,
               2 << 1)


def check_cases(corpus):
  three = dict(THREE)
  array = corpus.merged(three, "-a", "-l")
  trees = corpus.merged(three, "-n", "15")
  tree = corpus.merged(SMALL, "-n", "99")
  parts = folder(["GATTACA", "CAT", "TAGATTACA"], [2, 1])
  origin = folder(["GATTACA", "CAT", "TAGATTACA"], [2, 1], True)
  corpus.check("accepted-array", array)
  corpus.check("accepted-array-all", array, ALL | JSON)
  corpus.check("accepted-no-lcp", corpus.merged(
      {k: v for k, v in SMALL.items() if not k.endswith(".stlcp")}, "-a"))
  corpus.check("accepted-trees", trees, ALL | TO_TREES)
  corpus.check("accepted-tree", tree, JSON)
  corpus.check("accepted-reordered", corpus.merged(three, "-R", "-n", "20"))
  corpus.check("accepted-both", corpus.merged(corpus.merged(
      folder(["ACAC", "ACAC", "CACA"]), "-a"), "-n", "12"))
  corpus.check("accepted-partitions", corpus.merged(parts, "-a", "-l"),
               TO_TREES)
  corpus.check("accepted-zero-origin", corpus.merged(origin, "-z", "-a"),
               CHECK_Z)
  corpus.check("accepted-no-input", corpus.merged(folder([]), "-a"))
  long_matches = folder([LONG[:1090] + "A", LONG], None, False,
                        lambda i, pos: pos < 9)
  corpus.check("refused-long", corpus.merged(long_matches, "-a"), ALL)
  corpus.check("refused-no-output", three, ALL)
  corpus.check("refused-nothing", {}, ALL)

  def refuse(name, case):
    # To go on after a fault leads further; the fuzzer drops the flag itself.
    corpus.check("refused-" + name, case, ALL)

  for name in [".stlengths", ".stblengths"]:
    for how, value in [("huge", 0xFFFFFFFF), ("one-off", 18)]:
      refuse(name[1:] + "-" + how, word_changed(array, name, 1, value))
  refuse("partitions-huge", dict(array, **{".stplengths": b"\xff" * 12}))
  refuse("partitions-many", dict(array, **{".stplengths": bytes(400)}))
  refuse("padding", word_changed(array, "_1.stbin", 1, lambda w: w | 1))
  refuse("trailer", word_changed(array, "_1.stbin", -1, 1))
  refuse("string-short", changed(array, "_1.stbin", lambda d: d[:4]))
  for name, how, index, value in [
      ("_1.stpsa", "input", 0, 3 << 2), (".stpsa", "input-huge", 4, -1),
      ("_1.stpsa", "position-huge", 5, -1), (".stpsa", "position", 5, 17),
      ("_1.stpsa", "prefix", 10, lambda w: w ^ 1),
      (".stpsa", "twice", 5, lambda w: w ^ 4)]:
    refuse(how, word_changed(array, name, index, value))
  refuse("short", changed(array, ".stpsa", lambda d: d[:-16]))
  refuse("half-record", changed(array, ".stpsa", lambda d: d[:-3]))
  refuse("lcp", word_changed(array, ".stlcp", 7, lambda w: w ^ 2))
  refuse("lcp-short", changed(array, ".stlcp", lambda d: d[:-4]))

  for name, case in forged_trees(tree):
    refuse("tree-" + name, case)
  for how, index, value in [
      ("first", 1, 0), ("last", 0, 0), ("number", 2, 7),
      ("number-negative", 2, 0xFFFFFFFF), ("nodes", 3, 13),
      ("nodes-negative", 3, 0xFFFFFFFF), ("nodes-none", 3, 0),
      ("depth", 4, 0xFFFF), ("reserved", 5, 1)]:
    refuse("divider-" + how, word_changed(tree, ".stdiv", index, value))
  refuse("divider-twice", changed(tree, ".stdiv", lambda d: d + d))
  refuse("divider-half", changed(tree, ".stdiv", lambda d: d[:-1]))
  refuse("tree-missing", changed(tree, "_0.stree", None))
  refuse("a-tree-missing", changed(trees, "_1.stree", None))
  refuse("trees-swapped", dict(trees, **{"_0.stree": trees["_1.stree"],
                                         "_1.stree": trees["_0.stree"]}))


def forged_trees(tree):
  """Names and folders of one tree of 14 records gone wrong."""
  def node(record, word, value):
    return word_changed(tree, "_0.stree", 3 * record + word, value)

  yield "cycle-root", node(1, 1, 1 << 2)
  yield "cycle", node(4, 1, 4 << 2)
  yield "cycle-of-two", node(9, 1, 4 << 2)
  yield "shared-child", node(9, 2, 3 << 2)
  yield "child-beyond", node(4, 1, 14 << 2)
  yield "child-far-beyond", node(4, 2, 0xFFFFFFFC)
  yield "no-child", node(4, 1, 0)
  yield "group-past-end", node(13, 1, lambda w: w | 2)
  yield "group-grows", node(2, 1, lambda w: w | 2)
  yield "input-beyond", node(2, 1, 2 << 2 | 1)
  yield "input-huge", node(2, 1, 0xFFFFFFFD)
  yield "edge-zero", node(4, 0, 0)
  yield "edge-huge", node(4, 0, 0xFFFFFFFF)
  yield "edges-wrap", changed(node(4, 0, 0xFFFFFFFF), "_0.stree", lambda d:
                              patched(d, 27, 0xFFFFFFFF))
  yield "edge-odd", node(5, 0, 2)
  yield "root-leaf", node(0, 1, 1)
  yield "root-group", node(0, 1, lambda w: w | 2)
  yield "empty", changed(tree, "_0.stree", b"")
  yield "root-alone", changed(tree, "_0.stree", bytes(12))
  yield "cut", changed(tree, "_0.stree", lambda d: d[:-12])
  yield "more", changed(tree, "_0.stree", lambda d: d + bytes(12))


def view_cases(corpus):
  array = corpus.merged(SMALL, "-a", "-l")
  tree = corpus.merged(SMALL, "-n", "99")
  everything = dict(array, **{name: tree[name] for name in tree
                              if name.endswith((".stdiv", ".stree"))})
  everything[".stplengths"] = words([1, 1])
  corpus.view("accepted-everything", everything)
  corpus.view("accepted-json", everything, VIEW_JSON)
  corpus.view("accepted-slice", everything, RANGE, 2, 3)
  corpus.view("accepted-beyond", everything, RANGE | VIEW_JSON, 200, 255)
  corpus.view("accepted-drawing", tree, DOT)
  corpus.view("accepted-labels", tree, DOT | DATA)
  corpus.view("accepted-reordered", corpus.merged(SMALL, "-R"), DOT | DATA)
  trees = corpus.merged(folder(["ACACAC", "ACACAC", "CACG"]), "-n", "14")
  corpus.view("accepted-trees", trees, DOT | DATA)
  corpus.view("refused-nothing", {})
  corpus.view("refused-json-drawing", tree, DOT | VIEW_JSON)
  corpus.view("refused-labels-alone", tree, DATA)
  for name in [".stpsa", ".stlcp", ".stdiv", "_0.stree", ".stlengths",
               "_0.stbin"]:
    corpus.view("refused-half-" + name.replace(".", ""),
                {name: everything[name][:-1]})
  for name, case in forged_trees(tree):
    if name.startswith(("cycle", "child", "group")):
      corpus.view("refused-" + name, case, DOT)
    elif "huge" in name or "wrap" in name:
      corpus.view("refused-" + name, case, DOT | DATA)
  corpus.view("refused-labels-no-string",
              changed(tree, "_0.stbin", None), DOT | DATA)
  corpus.view("refused-labels-short",
              changed(tree, "_0.stbin", b""), DOT | DATA)
  corpus.view("refused-labels-bits",
              word_changed(tree, ".stblengths", 0, 4), DOT | DATA)
  corpus.view("refused-labels-bits-many",
              word_changed(tree, ".stblengths", 0, 0xFFFFFFFE), DOT | DATA)
  corpus.view("refused-labels-no-bits",
              changed(tree, ".stblengths", b""), DOT | DATA)


def zstd(content, block_type=0, size=None):
  """A frame of one raw block, or of one repeated byte (block_type 1)."""
  size = len(content) if size is None else size
  return (b"\x28\xb5\x2f\xfd\xa0" + struct.pack("<I", size) +
          struct.pack("<I", 1 | block_type << 1 | size << 3)[:3] + content)


def prepare_cases(corpus):
  fasta = b">one first\nGATTACAGATTACAGATTACA\nGATTNNNNACA\n>two\nacgu\n>three\n"
  fastq = b"@r1\nGATTC\n+\nIIIII\n@r2\nGA\nTT\n+r2\n@@\n+I\n"

  def write(name, data, options=0):
    corpus.write("prepare", name, bytes([options]) + data)

  write("accepted-fasta", fasta)
  for options in [PER_RECORD | LCP, SKIP, TWICE | ZERO_ORIGIN | LCP,
                  THEN_TREES | TWICE | LCP]:
    write("accepted-fasta-%d" % options, fasta, options)
  write("refused-ambiguous", fasta, ERROR)
  write("accepted-fastq", fastq, LCP)
  write("accepted-windows", fasta.replace(b"\n", b"\r\n"), LCP)
  write("accepted-no-line-end", b">x\nACGT", LCP | TWICE)
  write("accepted-blank-lines", b"\n \n>x\n\nAC GT\n\n\n>y\nA\n\n", LCP)
  write("accepted-boundaries", b"".join(
      b">%d\n%s\n" % (n, (b"ACGTTGCA" * 9)[:n])
      for n in [1, 15, 16, 17, 31, 32, 33, 63, 64, 65]), LCP)
  write("accepted-repeats", b">a\n" + b"A" * 70 + b"\n>b\n" + b"AC" * 35,
        LCP | THEN_TREES)
  compressed = {
      "gzip": gzip.compress(fasta, mtime=0),
      "gzip-members": gzip.compress(fasta, mtime=0) +
                      gzip.compress(b">z\nGG\n", mtime=0),
      "bzip2": bz2.compress(fasta), "bzip2-two": bz2.compress(fasta) * 2,
      "xz": lzma.compress(fasta), "zstd": zstd(fasta),
  }
  for name, data in compressed.items():
    write("accepted-" + name, data, LCP)
    write("refused-followed-" + name, data + b"!")
    if "-" in name: continue
    write("refused-cut-" + name, data[:-9], LCP)
    write("damaged-" + name, data[:20] + bytes([data[20] ^ 4]) + data[21:])
  crc = compressed["gzip"]
  write("refused-checksum", crc[:-5] + bytes([crc[-5] ^ 1]) + crc[-4:])
  write("refused-expands", zstd(b"A", 1, 1 << 17))
  write("expands", zstd(b"\n", 1, 1 << 17))
  for name, data in [
      ("empty", b""), ("only-header", b">x"),
      ("only-ambiguous", b">x\nNNNN\n"), ("mixed", b">x\nAC\n@y\nAC\n+\nII\n"),
      ("binary", bytes(range(256))), ("letter", b">x\nACGZ\n"),
      ("return", b">x\ry\nACGT\n"),
      ("text", b"ACGT\n"), ("no-quality", b"@x\nACGT\n"),
      ("many-qualities", b"@x\nACGT\n+\nIIIII\n"),
      ("quality-byte", b"@x\nACGT\n+\nII\x7fI\n"),
      ("gzip-magic", b"\x1f\x8b"), ("bzip2-magic", b"BZh9"),
      ("xz-magic", b"\xfd7zXZ\0"), ("zstd-magic", b"\x28\xb5\x2f\xfd")]:
    write("refused-" + name, data)


def main():
  here = os.path.dirname(os.path.abspath(__file__))
  parser = argparse.ArgumentParser(
      description="Writes the first cases of the corpus.")
  parser.add_argument("--palvor", required=True, help="the program")
  parser.add_argument("--output", default=os.path.join(here, "corpus"))
  arguments = parser.parse_args()
  corpus = Corpus(os.path.abspath(arguments.palvor), arguments.output)
  merge_cases(corpus)
  check_cases(corpus)
  view_cases(corpus)
  prepare_cases(corpus)


if __name__ == "__main__":
  main()
