#!/usr/bin/env python3
"""Makes one data folder of several: gather.py PREPARED GROUPS DIR NAME

Takes PREPARED/<g>.ST/ for g from 0 to GROUPS - 1, each made by palvor-kit
prepare --zero-origin, and makes DIR/NAME.ST/, as if all had been prepared at
once. Strings and suffix arrays are hard links to the old files, or symbolic
links where the disk has no hard ones, so that it takes no room; a record's
input number counts from 0 in its array, so that none has to change.
"""

import array
import os
import shutil
import sys


def words_of(path):
    words = array.array("I")
    if words.itemsize != 4 or sys.byteorder != "little":
        raise SystemExit("gather: lengths files are little-endian words of 32 bits")
    with open(path, "rb") as file:
        words.frombytes(file.read())
    return words


def link(old, new):
    try:
        os.link(old, new)
    except OSError:
        os.symlink(os.path.relpath(old, os.path.dirname(new)), new)


class Collection:
    """The folder that is made, and what it holds so far."""

    def __init__(self, base):
        self.base = base
        self.lengths = array.array("I")
        self.bits = array.array("I")
        self.partitions = array.array("I")
        self.table = open(base + ".inputs.tsv", "wb")

    def add(self, base):
        """Adds the data folder whose files begin with a path."""
        lengths = words_of(base + ".stlengths")
        inputs = len(lengths)
        one_each = array.array("I", [1] * inputs)
        has_partitions = os.path.exists(base + ".stplengths")
        partitions = words_of(base + ".stplengths") if has_partitions else one_each
        if sum(partitions) != inputs:
            raise SystemExit(f"gather: {base}.stplengths: not of {inputs} inputs")
        first_input = len(self.lengths)
        first_array = len(self.partitions)
        for i in range(inputs):
            link(f"{base}_{i}.stbin", f"{self.base}_{first_input + i}.stbin")
        for j in range(len(partitions)):
            link(f"{base}_{j}.stpsa", f"{self.base}_{first_array + j}.stpsa")
        with open(base + ".inputs.tsv", "rb") as table:
            for line in table:
                number, suffix_array, rest = line.split(b"\t", 2)
                self.table.write(
                    b"%d\t%d\t%s"
                    % (int(number) + first_input, int(suffix_array) + first_array, rest)
                )
        self.lengths.extend(lengths)
        self.bits.extend(words_of(base + ".stblengths"))
        self.partitions.extend(partitions)

    def finish(self):
        """Writes the lengths, which make the folder whole."""
        self.table.close()
        if len(self.partitions) != len(self.lengths):
            self.write(".stplengths", self.partitions)
        self.write(".stblengths", self.bits)
        self.write(".stlengths", self.lengths)

    def write(self, kind, words):
        with open(self.base + kind, "wb") as file:
            words.tofile(file)


def main():
    prepared, groups, directory, name = sys.argv[1:]
    folder = os.path.join(directory, name + ".ST")
    made = folder + ".part"
    shutil.rmtree(made, ignore_errors=True)
    os.makedirs(made)
    collection = Collection(os.path.join(made, name))
    for g in range(int(groups)):
        collection.add(os.path.join(prepared, f"{g}.ST", str(g)))
    collection.finish()
    shutil.rmtree(folder, ignore_errors=True)
    os.rename(made, folder)


if __name__ == "__main__":
    main()
