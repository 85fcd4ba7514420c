"""A table of what was made: a range on each line, and the sum of them."""

import os
import sys


def measured(step, number):
    """Seconds and megabytes of a job, as Snakemake has measured it."""
    path = f"results/benchmarks/{step}/{number}.tsv"
    if not os.path.exists(path):
        return "-", "-"
    with open(path) as table:
        names, values = (line.rstrip("\n").split("\t") for line in table)
    job = dict(zip(names, values))
    return job["s"], job["max_rss"]


def main():
    with open(snakemake.input.ranges) as plan:
        ranges = [line.split("\t") for line in plan if not line.startswith("#")]
    proofs = snakemake.input.get("proofs", [])
    with open(snakemake.output[0], "w") as table:
        print("range", "suffixes", "seconds", "megabytes", "proof", sep="\t", file=table)
        for number, _, _, suffixes, _ in ranges:
            proof = "right" if proofs else "not proved"
            print(number, suffixes, *measured("merge", number), proof, sep="\t", file=table)
        total = sum(int(line[3]) for line in ranges)
        state = "joined" if snakemake.input.merged[0].endswith("-array.stpsa") else "in parts"
        print("all", total, "-", "-", state, sep="\t", file=table)


with open(snakemake.log[0], "w") as sys.stderr:
    main()
