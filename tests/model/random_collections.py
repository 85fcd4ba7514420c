"""Small random data folders for palvor, made straight from the definitions:
every PSA is a plain sort of its suffixes.

    collection = random_collections.make(random.Random(seed), "/tmp/case")

The kinds are those that tell a careful merge from a careless one: repeats,
near-identical inputs, equal suffixes, lengths around word boundaries, PSAs
without records, several inputs in a PSA or one input's suffixes in several.
"""

import os
import struct

CODES = {"A": "00", "C": "01", "G": "10", "T": "11"}
EDGES = [1, 2, 15, 16, 17, 31, 32, 33, 47, 48, 49, 63, 64, 65]


class Collection:
  """A data folder on disk, and what a command needs to know of it.

  inputdir, prefix, sdir, spfx   as on palvor's command line
  inputs       number of input strings
  streams      number of PSAs
  partitioned  there is a partitions file
  zeroOrigin   the PSAs number their inputs from zero: needs -z
  own          PSA j holds suffixes of input j alone, so -N can leave some out
  """


def words(bits):
  """The 32-bit words of a text of bits, the last filled with zeros."""
  return [int(bits[i:i + 32].ljust(32, "0"), 2)
          for i in range(0, len(bits), 32)]


def packed(values):
  return struct.pack("<%dI" % len(values), *values)


def length(rng):
  return rng.choice(EDGES) if rng.random() < 0.6 else rng.randint(1, 65)


def letters(rng, n, alphabet="ACGT"):
  return "".join(rng.choice(alphabet) for _ in range(n))


def mutated(rng, text):
  """A copy with a few substitutions, insertions and deletions."""
  text = list(text)
  for _ in range(rng.randint(0, 3)):
    at = rng.randrange(len(text))
    change = rng.choice(["substitute", "insert", "delete"])
    if change == "substitute":
      text[at] = rng.choice("ACGT")
    elif change == "insert":
      text.insert(at, rng.choice("ACGT"))
    elif len(text) > 1:
      del text[at]
  return "".join(text)


def fibonacci(rng):
  a, b = rng.sample("ACGT", 2)
  x, y = a, a + b
  while len(y) < 65:
    x, y = y, y + x
  return y


def texts(rng):
  """The input strings of one collection."""
  count = rng.choice([1, 2, 2, 3, 3, 4, 5, 6, 8, 12, 16, 17, 30, 90])
  kind = rng.choice(["random", "letters", "periodic", "fibonacci", "same",
                     "near", "prefixes", "suffixes", "mixed"])
  base = letters(rng, length(rng), rng.choice(["ACGT", "A", "T", "AC", "GT"]))
  alphabet = "".join(rng.sample("ACGT", rng.randint(1, 2)))
  unit = letters(rng, rng.randint(1, 5))

  def one(kind):
    n = length(rng)
    if kind == "random":
      return letters(rng, n)
    if kind == "letters":
      return letters(rng, n, alphabet)
    if kind == "periodic":
      return (unit * 65)[rng.randrange(len(unit)):][:n]
    if kind == "fibonacci":
      return golden[:n]
    if kind == "near":
      return mutated(rng, base)
    if kind == "prefixes":
      return base[:rng.randint(1, len(base))]
    if kind == "suffixes":
      return letters(rng, rng.randint(0, 3)) + base[rng.randrange(len(base)):]
    return base

  golden = fibonacci(rng)
  kinds = ["random", "letters", "periodic", "fibonacci", "same", "near",
           "prefixes", "suffixes"]
  made = [one(rng.choice(kinds) if kind == "mixed" else kind)
          for _ in range(count)]
  if rng.random() < 0.05:
    made[rng.randrange(count)] = ""  # an input without suffixes
  return made


def shared(rng, inputs, c):
  """Deals the suffixes, (input, pos), out to PSAs; fills in how they number
  their inputs. Returns the PSAs and the entries of the partitions file."""
  n = len(inputs)
  suffixes = [[(i, pos) for pos in range(len(t))]
              for i, t in enumerate(inputs)]
  c.own = c.partitioned = c.zeroOrigin = False
  layout = rng.choice(["own", "own", "partitions", "partitions", "scattered"])
  if layout == "own":
    c.own = True
    c.zeroOrigin = rng.random() < 0.25
    return suffixes, [], list(range(n))
  c.partitioned = True
  if layout == "scattered":
    # Any deal of the suffixes merges to the same order; the entries of the
    # partitions file then say nothing that is used.
    psas = [[] for _ in range(rng.randint(1, n + 2))]
    for s in sum(suffixes, []):
      rng.choice(psas).append(s)
    return psas, [rng.randint(0, 9) for _ in psas], [0] * len(psas)
  c.zeroOrigin = rng.random() < 0.5
  cuts = sorted(rng.randint(0, n) for _ in range(rng.randint(0, n - 1)))
  bounds = [0] + cuts + [n]
  psas = [sum(suffixes[a:b], []) for a, b in zip(bounds, bounds[1:])]
  return psas, [b - a for a, b in zip(bounds, bounds[1:])], bounds[:-1]


def record(rng, bits, i, pos, origin):
  """One suffix as its PSA holds it, with flags that mean nothing."""
  prefix = words(bits[i][2 * pos:2 * pos + 64].ljust(64, "0"))
  return packed([(i - origin) << 2 | rng.randrange(4), pos] + prefix)


def entries(rng, sortedTexts):
  """The .stlcp entries of one PSA. The first means nothing."""
  result = [rng.getrandbits(32)] if sortedTexts else []
  for a, b in zip(sortedTexts, sortedTexts[1:]):
    L = len(os.path.commonprefix([a, b]))
    result.append(L << 1 | (L < min(len(a), len(b))))
  return result


def make(rng, folder):
  """Writes one collection below `folder`."""
  c = Collection()
  c.inputdir, c.prefix = folder + "/", rng.choice(["chr", "x", "ab_c"])
  c.sdir, c.spfx = c.inputdir, c.prefix
  if rng.random() < 0.2:
    c.sdir = folder + "/psa/"
  if rng.random() < 0.2:
    c.spfx = "other"
  inputs = texts(rng) if rng.random() > 0.01 else []
  bits = ["".join(CODES[x] for x in t) for t in inputs]
  if inputs:
    psas, plengths, origins = shared(rng, inputs, c)
  else:
    c.own, c.partitioned, c.zeroOrigin = True, False, False
    psas, plengths, origins = [], [], []
  if rng.random() < 0.2:
    # A PSA need not hold all of its suffixes, or any.
    psas = [rng.sample(p, rng.choice([0, len(p) // 2, len(p)])) for p in psas]
  c.inputs, c.streams = len(inputs), len(psas)

  ragged = rng.random() < 0.1  # bytes and entries past what is used
  def tail(most):
    return bytes([255]) * rng.randint(0, most) if ragged else b""
  def write(directory, prefix, name, data):
    os.makedirs("%s%s.ST" % (directory, prefix), exist_ok=True)
    with open("%s%s.ST/%s" % (directory, prefix, name), "wb") as file:
      file.write(data)
  def writeInput(name, data):
    write(c.inputdir, c.prefix, c.prefix + name, data)
  def writePSA(name, data):
    write(c.sdir, c.spfx, name, data)

  lengths = [len(t) for t in inputs]
  if rng.random() < 0.05:
    lengths = [rng.randint(0, 99) for _ in inputs]  # may disagree
  writeInput(".stlengths", packed(lengths) + tail(3))
  writeInput(".stblengths", packed([len(b) for b in bits]) + tail(9))
  for i, b in enumerate(bits):
    writeInput("_%d.stbin" % i, packed(words(b) + [0]) + tail(9))
  if c.partitioned:
    writePSA(c.prefix + ".stplengths", packed(plengths) + tail(3))
  for j, psa in enumerate(psas):
    psa = sorted(psa, key=lambda s: (bits[s[0]][2 * s[1]:], s[0]))
    origin = origins[j] if c.zeroOrigin else 0
    writePSA("%s_%d.stpsa" % (c.spfx, j), b"".join(
        record(rng, bits, i, pos, origin) for i, pos in psa) + tail(15))
    writePSA("%s_%d.stlcp" % (c.spfx, j), packed(
        entries(rng, [bits[i][2 * pos:] for i, pos in psa])) + tail(3))
  return c
