# Names of files, and what jobs ask for.

import os
import sys

NAME = config["name"]
ARRAY = f"results/{NAME}-array.ST/{NAME}-array"  # of the merged array's files

joined = [f"{ARRAY}.stpsa", f"{ARRAY}.stlcp"]

# Where the data folder and the merged array are, as palvor-kit takes it. Groups
# of genomes are numbered by themselves, from zero.
PLACES = f"results/ {NAME} -o results/ -p {NAME}-array -z"


def genomes():
    with open(config["genomes"], encoding="utf-8", errors="surrogateescape") as file:
        return [line for line in file.read().split("\n") if line]


def group_count():
    return -(-len(genomes()) // config["genomes_per_job"])


def genomes_of(group):
    first = int(group) * config["genomes_per_job"]
    return genomes()[first : first + config["genomes_per_job"]]


def table_of(path):
    """Lines of a table by the words of their first fields, as numbers."""
    with open(path) as table:
        lines = [line.rstrip("\n").split("\t") for line in table]
    names = lines[0]
    return {line[0]: dict(zip(names[1:], map(float, line[1:]))) for line in lines[1:]}


def planned_ranges():
    """Suffixes of each planned range; plans first, if that is yet to be done."""
    with open(checkpoints.plan.get().output.ranges) as plan:
        return [int(line.split("\t")[3]) for line in plan if not line.startswith("#")]


def parts(which):
    """Files of the parts of some ranges."""
    return [f"{ARRAY}_{r}.range.{kind}" for r in which for kind in ("stpsa", "stlcp")]


def megabytes(needed, attempt):
    """What a job asks for, from the bytes it needs; more, if it failed before."""
    return min(int(needed * 1.1 / 2**20 * (1 + attempt) / 2) + 64, config["most_memory"])


def minutes(seconds, attempt):
    return int(seconds * config["slowness"] * attempt / 60) + 5


def characters_of(group):
    """At most, about: sequences compressed have some four characters a byte."""
    sizes = [os.path.getsize(path) for path in genomes_of(group)]
    return [4.5 * size for size in sizes]


def prepare_memory(group, attempt):
    # As palvor-kit-prepare(1) says: of the largest array, and a thread's more.
    strands = 2 if config["strands"] == "both" else 1
    longest = strands * max(characters_of(group))
    threads = config["prepare_threads"]
    return megabytes(7.25 * longest + 16e6 * (1 + threads), attempt)


def prepare_minutes(group, attempt):
    strands = 2 if config["strands"] == "both" else 1
    return minutes(200e-9 * strands * sum(characters_of(group)), attempt)


def estimated(step, figure):
    return table_of(checkpoints.plan.get().output.estimate)[step][figure]


def step_memory(step, attempt):
    return megabytes(estimated(step, "memory"), attempt)


def step_minutes(step, attempt):
    return minutes(estimated(step, "seconds"), attempt)
