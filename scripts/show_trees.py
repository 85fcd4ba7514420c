#!/usr/bin/env python3
"""Shows which prefixes each suffix tree of a merge covers.

Usage: show_trees.py MERGED
  MERGED  path of the output files up to the prefix: data/chr.ST/chr

The dividers file is described in docs/formats.md.
"""

import os
import struct
import sys

DIVIDER = struct.Struct("<IIiiH6x")  # last, first, tree, nodes, depth
SHOWN = 3


def characters(prefix):
    """The sixteen characters of a prefix word."""
    return "".join("ACGT"[prefix >> shift & 3] for shift in range(30, -1, -2))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    merged = sys.argv[1]
    with open(merged + ".stdiv", "rb") as file:
        dividers = list(DIVIDER.iter_unpack(file.read()))
    print(f"{len(dividers)} trees, {sum(d[3] for d in dividers)} nodes.")
    print(f"{'tree':>4} {'nodes':>9} {'depth':>5} {'bytes':>9}  "
          f"{'from':<16}  to")
    for i, (last, first, tree, nodes, depth) in enumerate(dividers):
        if SHOWN <= i < len(dividers) - 1:
            if i == SHOWN:
                print(" ...")
            continue
        size = os.path.getsize(f"{merged}_{tree}.stree")
        print(f"{tree:>4} {nodes:>9} {depth:>5} {size:>9}  "
              f"{characters(first)}  {characters(last)}")


main()
