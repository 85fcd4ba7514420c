#!/usr/bin/env python3
"""Shows the first suffixes of a merged suffix array, and where they deepen.

Usage: show_array.py INPUTS MERGED
  INPUTS  path of a data folder's files up to the prefix: data/chr.ST/chr
  MERGED  the same of the folder that palvor -a -l wrote

The formats are described in docs/formats.md; this reads no more of the files
than it shows, except that it scans the LCP array once for its longest entry.
"""

import array
import os
import sys

SUFFIX_SIZE = 16


def words(path, first, count):
    """`count` little-endian 32-bit words of a file, from word `first` on."""
    with open(path, "rb") as file:
        file.seek(4 * first)
        result = array.array("I", file.read(4 * count))
    if sys.byteorder == "big":
        result.byteswap()
    return result


def text(inputs, number, position, length):
    """Characters of an input string, from `position` on."""
    first, skipped = divmod(position, 16)
    count = (skipped + length + 15) // 16
    packed = words(f"{inputs}_{number}.stbin", first, count)
    characters = "".join(
        "ACGT"[word >> shift & 3] for word in packed for shift in range(30, -1, -2)
    )
    return characters[skipped : skipped + length]


def names(inputs):
    """Per input: the file and the record that it came from."""
    result = []
    with open(inputs + ".inputs.tsv", encoding="utf-8") as file:
        for line in file:
            fields = line.rstrip("\n").split("\t")
            if fields[0].isdigit():
                other = " (reverse)" if fields[6:] == ["-"] else ""
                result.append(f"{os.path.basename(fields[2])} {fields[3]}{other}")
    return result


def longest(path):
    """The number and the value of the largest entry but the first."""
    best, best_at, base = 0, 0, 0
    while block := words(path, base, 1 << 20):
        if base == 0:
            block[0] = 0
        top = max(block)
        if top > best:
            best, best_at = top, base + block.index(top)
        base += len(block)
    return best_at, best


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    inputs, merged = sys.argv[1:]
    length = words(inputs + ".stblengths", 0, 1 << 30)
    name = names(inputs)
    records = os.path.getsize(merged + ".stpsa") // SUFFIX_SIZE

    def show(record):
        word, position, _, _ = words(merged + ".stpsa", 4 * record, 4)
        number = word >> 2
        entry = words(merged + ".stlcp", record, 1)[0]
        shared = f"{entry >> 1:>8}" if record > 0 else "       -"
        shown = min(length[number] // 2 - position, 32)
        print(
            f"{record:>9} {shared} {position:>9}  "
            f"{text(inputs, number, position, shown):<32}  {name[number]}"
        )

    heading = f"{'rank':>9} {'lcp bits':>8} {'position':>9}  {'text':<32}  genome"
    print(f"\n{records} suffixes, in order. The first five:\n{heading}")
    for record in range(min(5, records)):
        show(record)
    if records > 1:
        at, entry = longest(merged + ".stlcp")
        print(
            f"\nThe longest match, {entry // 4} characters, is between ranks "
            f"{at - 1} and {at}:\n{heading}"
        )
        show(at - 1)
        show(at)


main()
