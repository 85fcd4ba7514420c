#!/usr/bin/env python3
"""Sets distances of several programs side by side.

usage: compare_distances.py PALVOR_TSV ANDI_PHYLIP KR_PHYLIP FASTA...

Prints a line for each pair of genomes, in the order of the FASTA files, and how
well each two programs agree on the order of the pairs (Spearman's rank
correlation).
"""

import itertools
import sys


def phylip(path, count):
    """The last square matrix in a file: rows of a name and numbers."""
    rows = []
    with open(path) as lines:
        for line in lines:
            fields = line.split()
            try:
                rows.append([float(f) for f in fields[-count:]])
            except ValueError:
                continue
    rows = [row for row in rows if len(row) == count][-count:]
    if len(rows) != count:
        sys.exit(f"{path}: no matrix of {count} rows")
    return rows


def ranks(numbers):
    order = sorted(range(len(numbers)), key=numbers.__getitem__)
    result = [0.0] * len(numbers)
    for _, group in itertools.groupby(enumerate(order),
                                      lambda pair: numbers[pair[1]]):
        group = list(group)
        mean = sum(place for place, _ in group) / len(group)
        for _, index in group:
            result[index] = mean
    return result


def correlation(a, b):
    a, b = ranks(a), ranks(b)
    mean = (len(a) - 1) / 2
    both = sum((x - mean) * (y - mean) for x, y in zip(a, b))
    squares = [sum((x - mean) ** 2 for x in c) for c in (a, b)]
    return both / (squares[0] * squares[1]) ** 0.5 if all(squares) else 1.0


def main(tsv, andi_path, kr_path, *names):
    andi, kr = phylip(andi_path, len(names)), phylip(kr_path, len(names))
    with open(tsv) as lines:
        header = next(lines).rstrip("\n").split("\t")
        own = {}
        for line in lines:
            row = dict(zip(header, line.rstrip("\n").split("\t")))
            own[row["a"], row["b"]] = own[row["b"], row["a"]] = row
    columns = {"mash": [], "acs": [], "andi": [], "kr": []}
    print("a", "b", *columns, sep="\t")
    for (i, a), (j, b) in itertools.combinations(enumerate(names), 2):
        values = [float(own[a, b]["mash"]), float(own[a, b]["acs"]),
                  andi[i][j], kr[i][j]]
        for column, value in zip(columns.values(), values):
            column.append(value)
        print(a.split("/")[-1], b.split("/")[-1],
              *(f"{value:.6f}" for value in values), sep="\t")
    for a, b in itertools.combinations(columns, 2):
        print(f"{a} and {b}: rank correlation "
              f"{correlation(columns[a], columns[b]):.3f}")


main(*sys.argv[1:])
