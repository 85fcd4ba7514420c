#!/usr/bin/env python3
"""Runs palvor and the model on random collections with random options, and
compares every output file byte by byte and every line of standard error.

    differential.py --palvor build/src/palvor --cases 500
    differential.py --palvor build/src/palvor --seconds 60

A case is known by its seed: a failure prints it, with the command, and keeps
the folder, and --seed with --cases 1 runs it again.
"""

import argparse
import itertools
import random
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
import traceback
from pathlib import Path

import random_collections
from palvor_model import Model

VERSION = r"# Version: [A-Z][a-z]{2} [ \d]\d \d{4} \d\d:\d\d:\d\d"


def number(rng, value):
    """One of the ways to write a number on the command line."""
    forms = [f"{value}", f"{value}.0", f"{value}e0"]
    if value.bit_count() == 1:
        forms.append(f"2^{value.bit_length() - 1}")
    return rng.choice(forms)


def draw_options(rng, c):
    """Options for collection c, in one of the two modes."""
    array = rng.random() < 0.5
    buffer = 16 * rng.randint(1, 7)
    buffers = rng.random()  # of some bytes each, or together, or the default
    least, most = (1, 7) if array else (2, 9)
    # The chance of each, the option, and its value if it has one.
    chances = [
        (array, "-a"), (0.7 if array else 0.05, "-l"), (0.3, "-H"),
        (0.3, "-X"), (0.3, "-f"), (0.3, "-U"), (0.3, "-Z"), (0.4, "-R"),
        (0.5, "-C"), (0.05, "-q"), (0.05, "-v"), (0.05, "-c"), (0.05, "-b"),
        (0.05, "-w"), (0.05, "-L"), (c.zeroOrigin, "-z"),
        (buffers < 0.5, "-M", number(rng, buffer + rng.randrange(16))),
        (0.5 <= buffers < 0.7, "-m", number(
            rng, buffer * max(c.streams, 1) + rng.randrange(16))),
        (0.7, "-n", number(rng, rng.randint(least, rng.choice([most, 300])))),
        (0.1, "-i", number(rng, rng.randint(0, 9))),
        (0.1, "-x", number(rng, rng.randint(0, 99))), (0.05, "-J", "1-4,6"),
        (0 if c.partitioned else 0.2, "-N", str(rng.randint(0, c.inputs + 1))),
        (c.sdir != c.inputdir, "-S", c.sdir),
        (c.spfx != c.prefix, "-s", c.spfx),
        (0.3, "-o", c.inputdir + "out"), (0.3, "-p", "merged")]
    options = [option for chance, *option in chances if rng.random() < chance]
    rng.shuffle(options)
    # The folder stands before the prefix, both anywhere between the options.
    for at, value in zip(sorted(rng.choices(range(len(options) + 1), k=2)),
                         [c.inputdir, c.prefix]):
        options.insert(at + (value == c.prefix), [value])
    return sum(options, [])


def snapshot(folder):
    """{path: bytes} of every file below a folder."""
    return {str(path): path.read_bytes()
            for path in Path(folder).rglob("*") if path.is_file()}


def masked(line):
    """A line without what differs from run to run."""
    line = re.sub(r"\d+/\d+ ms|\d+ ms", "# ms", line)
    return re.sub(r"\d+ PFs", "# PFs", line)


def difference(got, want):
    """The first place at which two lists part, or None."""
    pairs = itertools.zip_longest(got, want, fillvalue="(nothing)")
    for i, (g, w) in enumerate(pairs):
        if g != w:
            return f"at {i}\n  palvor: {g}\n  model:  {w}"
    return None


def compare(command, run, before, after, model):
    """What palvor did otherwise than the model, as a text, or None."""
    if run.returncode != 0 or run.stdout:
        return f"status {run.returncode}: {run.stdout}{run.stderr}"
    echo, version, *lines = run.stderr.split("\n")
    if echo != f"# Command({len(command)}): {' '.join(command)} ":
        return "echo: " + echo
    if not re.fullmatch(VERSION, version):
        return "version: " + version
    # The last line ends, too.
    wanted = [masked(line) for line in [*model.log, ""]]
    if different := difference([masked(line) for line in lines], wanted):
        return "standard error, line " + different
    want = before | {str(Path(path)): data
                     for path, data in model.outputs.items()}
    if different := difference(sorted(after), sorted(want)):
        return "files, " + different
    for path, data in want.items():
        if after[path] != data:
            return f"{path}, word " + difference(
                after[path].hex(" ", 4).split(), data.hex(" ", 4).split())
    return None


def one_case(seed, folder, palvor):
    """Runs one case; returns None or (command, what went wrong)."""
    rng = random.Random(seed)
    c = random_collections.make(rng, folder)
    command = [palvor, *draw_options(rng, c)]
    before = snapshot(folder)
    try:
        model = Model(command[1:])
        model.run()
    except Exception:
        return command, "the model failed:\n" + traceback.format_exc()
    run = subprocess.run(command, capture_output=True, text=True, timeout=60,
                         check=False)
    trouble = compare(command, run, before, snapshot(folder), model)
    return (command, trouble) if trouble else None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--palvor", required=True, help="the program")
    parser.add_argument("--seconds", type=float, default=float("inf"))
    parser.add_argument("--cases", type=int, default=10**9)
    parser.add_argument("--seed", type=int, help="of the first case",
                        default=random.SystemRandom().randrange(10**9))
    args = parser.parse_args()
    print(f"first seed {args.seed}")
    end = time.monotonic() + args.seconds
    done = 0
    while done < args.cases and time.monotonic() < end:
        folder = tempfile.mkdtemp(prefix="palvor-")
        failure = one_case(args.seed + done, folder, args.palvor)
        if failure:
            command, trouble = failure
            print(f"seed {args.seed + done}, folder {folder}\n"
                  f"{shlex.join(command)}\n{trouble}\n"
                  f"{done} passed, 1 failed")
            return 1
        shutil.rmtree(folder)
        done += 1
    print(f"{done} passed, 0 failed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
