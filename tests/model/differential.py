#!/usr/bin/env python3
"""Runs palvor and the model on random collections with random options, and
compares every output file byte by byte and every line of standard error.

    differential.py --palvor build/src/palvor --cases 500
    differential.py --palvor build/src/palvor --seconds 60 --tree-only
    differential.py --model-only --cases 2000     # the model's own checks

A case is known by its seed: a failure prints it, with the command, and keeps
the folder, and --seed with --cases 1 runs it again.
"""

import argparse
import os
import random
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
import traceback

import random_collections
from palvor_model import Model


def number(rng, value):
  """One of the ways to write a number on the command line."""
  forms = [str(value), "%d.0" % value, "%de0" % value]
  if value & (value - 1) == 0:
    forms.append("2^%d" % (value.bit_length() - 1))
  return rng.choice(forms)


def drawOptions(rng, c, mode):
  """Options for collection c; mode is 'array' or 'tree'."""
  options = []

  def flag(letter, chance):
    if rng.random() < chance:
      options.append(["-" + letter])

  def value(letter, chance, text):
    if rng.random() < chance:
      options.append(["-" + letter, text])

  if mode == "array":
    options.append(["-a"])
  for letter, chance in [("l", 0.7 if mode == "array" else 0.05), ("H", 0.3),
                         ("X", 0.3), ("f", 0.3), ("U", 0.3), ("Z", 0.3),
                         ("R", 0.4), ("C", 0.5), ("q", 0.05), ("v", 0.05),
                         ("c", 0.05), ("b", 0.05), ("w", 0.05), ("L", 0.05)]:
    flag(letter, chance)
  if c.zeroOrigin:
    options.append(["-z"])
  buffers = rng.random()
  if buffers < 0.7:  # else the default budget
    letter, count = ("M", 1) if buffers < 0.5 else ("m", max(c.streams, 1))
    options.append(["-" + letter, number(
        rng, 16 * rng.randint(1, 7) * count + rng.randrange(16))])
  if rng.random() < 0.7:
    least, most = (1, 7) if mode == "array" else (2, 9)
    options.append(["-n", number(rng, rng.choice(
        [rng.randint(least, most), rng.randint(least, 300)]))])
  value("i", 0.1, number(rng, rng.randint(0, 9)))
  value("x", 0.1, number(rng, rng.randint(0, 99)))
  value("J", 0.05, "1-4,6")
  if c.own and not c.partitioned:
    value("N", 0.2, str(rng.randint(0, c.inputs + 1)))
  if c.sdir != c.inputdir:
    options.append(["-S", c.sdir])
  if c.spfx != c.prefix:
    options.append(["-s", c.spfx])
  value("o", 0.3, c.inputdir + "out")
  value("p", 0.3, "merged")
  options += [[c.inputdir], [c.prefix]]
  rng.shuffle(options)
  # The folder comes before the prefix wherever the two stand.
  folder, prefix = options.index([c.inputdir]), options.index([c.prefix])
  if folder > prefix:
    options[folder], options[prefix] = options[prefix], options[folder]
  return sum(options, [])


def snapshot(folder):
  """{path: bytes} of every file below a folder."""
  files = {}
  for where, _, names in os.walk(folder):
    for name in names:
      path = os.path.join(where, name)
      with open(path, "rb") as file:
        files[os.path.normpath(path)] = file.read()
  return files


def masked(line):
  """A line without what differs from run to run."""
  line = re.sub(r"\d+/\d+ ms|\d+ ms", "# ms", line)
  return re.sub(r"\d+ PFs", "# PFs", line)


def difference(got, want):
  """The first line or word at which two lists part, or None."""
  for i in range(max(len(got), len(want))):
    g = got[i] if i < len(got) else "(nothing)"
    w = want[i] if i < len(want) else "(nothing)"
    if g != w:
      return "at %d\n  palvor: %s\n  model:  %s" % (i, g, w)
  return None


def compare(command, run, before, after, model):
  """What palvor did otherwise than the model, as a text, or None."""
  if run.returncode != 0:
    return "status %d: %s" % (run.returncode, run.stderr)
  if run.stdout:
    return "standard output: " + run.stdout
  lines = run.stderr.split("\n")
  if lines.pop() != "":
    return "the last line does not end"
  echo = "# Command(%d): %s " % (len(command), " ".join(command))
  version = r"# Version: [A-Z][a-z]{2} [ \d]\d \d{4} \d\d:\d\d:\d\d"
  if lines[0] != echo or not re.fullmatch(version, lines[1]):
    return "echo or version:\n%s\n%s" % tuple(lines[:2])
  different = difference([masked(x) for x in lines[2:]],
                         [masked(x) for x in model.log])
  if different:
    return "standard error, line " + different
  want = dict(before)
  want.update((os.path.normpath(path), bytes(data))
              for path, data in model.outputs.items())
  if sorted(after) != sorted(want):
    return "files, " + difference(sorted(after), sorted(want))
  for path in sorted(want):
    if after[path] != want[path]:
      size = 4 if path.endswith(".stlcp") else 12 if path.endswith(
          ".stree") else 24 if path.endswith(".stdiv") else 16
      def records(data):
        return [data[i:i + size].hex(" ", 4)
                for i in range(0, len(data), size)]
      return "%s, record %s" % (path, difference(records(after[path]),
                                                 records(want[path])))
  return None


def oneCase(seed, folder, args):
  """Runs one case; returns None or (command, what went wrong)."""
  rng = random.Random(seed)
  c = random_collections.make(rng, folder)
  mode = rng.choice(["array", "tree"])
  mode = args.mode or mode  # drawn all the same: the seed then fits both
  command = [args.palvor or "palvor"] + drawOptions(rng, c, mode)
  before = snapshot(folder)
  try:
    model = Model(command[1:])
    model.run()
  except Exception:
    return command, "the model failed:\n" + traceback.format_exc()
  if args.model_only:
    return None
  run = subprocess.run(command, capture_output=True, text=True, timeout=60,
                       check=False)
  trouble = compare(command, run, before, snapshot(folder), model)
  return (command, trouble) if trouble else None


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--palvor", help="the program to compare")
  parser.add_argument("--model-only", action="store_true")
  parser.add_argument("--seconds", type=float)
  parser.add_argument("--cases", type=int)
  parser.add_argument("--seed", type=int, help="of the first case")
  modes = parser.add_mutually_exclusive_group()
  modes.add_argument("--array-only", dest="mode", action="store_const",
                     const="array")
  modes.add_argument("--tree-only", dest="mode", action="store_const",
                     const="tree")
  args = parser.parse_args()
  if not args.palvor and not args.model_only:
    parser.error("--palvor PATH or --model-only")
  if args.seconds is None and args.cases is None:
    args.cases = 200
  seed = args.seed
  if seed is None:
    seed = random.SystemRandom().randrange(10**9)
  print("first seed %d" % seed)
  started, done = time.monotonic(), 0
  while ((args.cases is None or done < args.cases) and
         (args.seconds is None or
          time.monotonic() - started < args.seconds)):
    folder = tempfile.mkdtemp(prefix="palvor-")
    failure = oneCase(seed + done, folder, args)
    if failure:
      command, trouble = failure
      print("seed %d, folder %s\n%s\n%s\n%d passed, 1 failed" % (
          seed + done, folder, shlex.join(command), trouble, done))
      return 1
    shutil.rmtree(folder)
    done += 1
  print("%d passed, 0 failed" % done)
  return 0


if __name__ == "__main__":
  sys.exit(main())
