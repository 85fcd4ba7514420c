"""palvor's command line, as the model reads it: the scan of the arguments,
the syntax of numbers and the line that lists the options in force.

Only commands that palvor accepts are of interest here. A command that it
refuses raises ValueError, without palvor's words.
"""

import re

FLAGS = {
    "q": "quiet", "v": "verbose", "c": "check", "a": "sarray", "l": "larray",
    "b": "bsuffix", "w": "czep", "X": "noprefix", "L": "noheap",
    "H": "hpflag", "f": "useFPs", "z": "iorigin", "U": "usemmap",
    "R": "reorder", "C": "compact", "Z": "Manzini",
}
TEXTS = {"o": "odir", "p": "opfx", "S": "sdir", "s": "spfx", "J": "Joption"}
NUMBERS = {"n": "maxNodes", "m": "maxSAMem", "M": "sBuffSize",
           "i": "maxIter", "x": "pfxlen", "N": "nmerge"}

# The items of the options line, in its order.
FLAG_ITEMS = [
    ("check", "check "), ("verbose", "verbose "), ("sarray", "sarray "),
    ("larray", "larray "), ("czep", "czep (deprecated) "),
    ("noprefix", "noprefix "), ("noheap", "noheap (deprecated) "),
    ("hpflag", "hpflag "), ("bsuffix", "bsuffix "), ("useFPs", "useFPs "),
    ("compact", "compact "), ("reorder", "reorder "),
    ("usemmap", "usemmap "), ("iorigin", "iorigin "),
    ("Manzini", "Manzini "),
]
TEXT_ITEMS = ["odir", "opfx", "sdir", "spfx", "Joption"]
NUMBER_ITEMS = ["maxNodes", "maxSAMem", "sBuffSize", "maxIter", "pfxlen",
                "nmerge"]


def int32(x):
  """The low 32 bits of x, as a signed number."""
  x &= 0xFFFFFFFF
  return x - (1 << 32) if x >> 31 else x


def getNum(s):
  """A number as an option gives it: 2^k, or decimal with an exponent."""
  if s.startswith("2^"):
    digits = re.match(r"\s*[+-]?\d+", s[2:])
    return int32(1 << (int(digits.group()) & 31 if digits else 0))
  number = re.match(r"\s*[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?", s)
  value = float(number.group()) if number else 0.0
  return int(max(-2.0**31, min(value, 2.0**31 - 1)))


class Options:
  """The run configuration: one attribute for each option variable, plus the
  two positional values. Flags and numbers are 0, texts None, until given."""

  def __init__(self, arguments):
    for name in list(FLAGS.values()) + list(NUMBERS.values()):
      setattr(self, name, 0)
    for name in TEXTS.values():
      setattr(self, name, None)
    self.inputdir = self.inputfileprefix = None
    self.scan(arguments)

  def scan(self, arguments):
    pending = None
    for argument in arguments:
      if argument.startswith("-"):
        letter = argument[1:2]
        if pending:
          raise ValueError("value pending at " + argument)
        if letter in FLAGS:
          setattr(self, FLAGS[letter], 1)
        elif letter in TEXTS or letter in NUMBERS:
          pending = letter
        else:
          raise ValueError("unrecognized " + argument)
      elif pending in NUMBERS:
        setattr(self, NUMBERS[pending], getNum(argument))
        pending = None
      elif pending:
        setattr(self, TEXTS[pending], argument)
        pending = None
      elif self.inputdir is None:
        self.inputdir = argument
      elif self.inputfileprefix is None:
        self.inputfileprefix = argument
      else:
        raise ValueError("third positional value " + argument)
    if pending or self.inputfileprefix is None:
      raise ValueError("incomplete command")

  def line(self):
    items = [label for name, label in FLAG_ITEMS if getattr(self, name)]
    items += ["%s=%s " % (name, getattr(self, name)) for name in TEXT_ITEMS
              if getattr(self, name) is not None]
    for name in NUMBER_ITEMS:
      value = getattr(self, name)
      if name == "maxSAMem":
        value &= 0xFFFFFFFF  # the one number printed without a sign
      if value:
        items.append("%s=%d " % (name, value))
    return "merge options: " + ("".join(items) or "none")
