"""Small random data folders for palvor, made straight from the definitions:
every PSA is a plain sort of its suffixes.

    collection = random_collections.make(random.Random(seed), "/tmp/case")

The kinds are those that tell a careful merge from a careless one: repeats,
near-identical inputs, equal suffixes, lengths around word boundaries, PSAs
without records, several inputs in a PSA or one input's suffixes in several.
"""

from dataclasses import dataclass

import data_folder
from data_folder import packed

LONGEST = 130  # characters of an input string
EDGES = [1, 2, 15, 16, 17, 31, 32, 33, 47, 48, 49, 63, 64, 65, 97, LONGEST]
# The most bytes past what is used of a file, by its ending.
TAILS = {"stlengths": 3, "stplengths": 3, "stlcp": 3, "stblengths": 9,
         "stbin": 9, "stpsa": 15}


@dataclass
class Collection:
    """A data folder on disk, and what a command needs to know of it."""

    inputdir: str  # the four as on palvor's command line
    prefix: str
    sdir: str
    spfx: str
    inputs: int  # number of input strings
    streams: int  # number of PSAs
    partitioned: bool  # has a partitions file; if not, PSA j is of input j
    zeroOrigin: bool  # the PSAs number their inputs from zero: needs -z


def length(rng):
    if rng.random() < 0.6:
        return rng.choice(EDGES)
    return rng.randint(1, rng.choice([65, LONGEST]))


def letters(rng, n, alphabet="ACGT"):
    return "".join(rng.choices(alphabet, k=n))


def mutated(rng, text):
    """A copy with a few substitutions, insertions and deletions."""
    for _ in range(rng.randint(0, 3)):
        at, letter = rng.randrange(len(text)), rng.choice("ACGT")
        text = rng.choice([text[:at] + letter + text[at + 1:],
                           text[:at] + letter + text[at:],
                           text[:at] + text[at + 1:] or text])
    return text


def fibonacci(rng):
    x, y = rng.sample("ACGT", 2)
    while len(y) < LONGEST:
        x, y = y, y + x
    return y


def texts(rng):
    """The input strings of one collection."""
    base = letters(rng, length(rng),
                   rng.choice(["ACGT", "A", "T", "AC", "GT"]))
    size = len(base)
    alphabet = rng.sample("ACGT", rng.randint(1, 2))
    unit = letters(rng, rng.randint(1, 5))
    golden = fibonacci(rng)
    kinds = [
        lambda: letters(rng, length(rng)),
        lambda: letters(rng, length(rng), alphabet),
        lambda: (unit * LONGEST)[rng.randrange(len(unit)):][:length(rng)],
        lambda: golden[:length(rng)],
        lambda: base,
        lambda: mutated(rng, base),
        lambda: base[:rng.randint(1, size)],
        lambda: letters(rng, rng.randint(0, 3)) + base[rng.randrange(size):],
    ]
    chosen = rng.choice([[kind] for kind in kinds] + [kinds])
    count = rng.choice([1, 2, 2, 3, 3, 4, 5, 6, 8, 12, 16, 17, 30, 90])
    made = [rng.choice(chosen)() for _ in range(count)]
    if rng.random() < 0.05:
        made[rng.randrange(count)] = ""  # an input without suffixes
    return made


def deal(rng, inputs):
    """Deals the suffixes, (input, pos), out to PSAs. Returns these, the
    entries of the partitions file, or None, and the first input of each PSA,
    or None if they have no such order."""
    n = len(inputs)
    suffixes = [[(i, pos) for pos in range(len(text))]
                for i, text in enumerate(inputs)]
    if not inputs:
        return [], [], []
    layout = rng.choice(2 * ["own", "partitions"] + ["scattered"])
    if layout == "own":
        return suffixes, None, list(range(n))
    if layout == "scattered":
        # Any deal of the suffixes merges to the same order; the entries of
        # the partitions file then say nothing that is used.
        arrays = [[] for _ in range(rng.randint(1, n + 2))]
        for suffix in sum(suffixes, []):
            rng.choice(arrays).append(suffix)
        return arrays, [rng.randint(0, 9) for _ in arrays], None
    cuts = [rng.randint(0, n) for _ in range(rng.randint(0, n - 1))]
    bounds = [0, *sorted(cuts), n]
    arrays = [sum(suffixes[a:b], []) for a, b in zip(bounds, bounds[1:])]
    return arrays, [b - a for a, b in zip(bounds, bounds[1:])], bounds[:-1]


def make(rng, folder):
    """Writes one collection below `folder`."""
    inputs = texts(rng) if rng.random() > 0.01 else []
    arrays, partitions, firsts = deal(rng, inputs)
    zeroOrigin = bool(firsts) and rng.random() < (
        0.25 if partitions is None else 0.5)
    if rng.random() < 0.2:
        # A PSA need not hold all of its suffixes, or any.
        arrays = [
            rng.sample(array, rng.choice([0, len(array) // 2, len(array)]))
            for array in arrays]
    files = data_folder.make_files(
        inputs, arrays, firsts if zeroOrigin else [0] * len(arrays),
        lambda: rng.randrange(4))
    for name, data in files.items():
        if name.endswith(".stlcp") and data:  # the first entry means nothing
            files[name] = packed([rng.getrandbits(32)]) + data[4:]
    if rng.random() < 0.05:  # may disagree
        files[".stlengths"] = packed([rng.randint(0, 99) for _ in inputs])
    if partitions is not None:
        files[".stplengths"] = packed(partitions)

    inputdir, prefix = folder + "/", rng.choice(["chr", "x", "ab_c"])
    sdir = inputdir + "psa/" if rng.random() < 0.2 else inputdir
    spfx = "other" if rng.random() < 0.2 else prefix
    ragged = rng.random() < 0.1
    for name, data in files.items():
        ending = name.split(".")[1]
        place, stem = f"{inputdir}{prefix}.ST/", prefix
        if ending in ("stplengths", "stpsa", "stlcp"):
            place = f"{sdir}{spfx}.ST/"
        if ending in ("stpsa", "stlcp"):
            stem = spfx
        if ragged:
            data += bytes([255]) * rng.randint(0, TAILS[ending])
        data_folder.write(place + stem + name, data)
    return Collection(inputdir, prefix, sdir, spfx, len(inputs), len(arrays),
                      partitions is not None, zeroOrigin)
