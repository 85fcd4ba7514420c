"""palvor's command line, as the model reads it: the options, the syntax of
numbers and the line that lists what is in force.

Only commands that palvor accepts are of interest here.
"""

# The letters and their variables, in the order in which they are listed.
FLAGS = {
    "c": "check", "v": "verbose", "a": "sarray", "l": "larray", "w": "czep",
    "X": "noprefix", "L": "noheap", "H": "hpflag", "b": "bsuffix",
    "f": "useFPs", "C": "compact", "R": "reorder", "U": "usemmap",
    "z": "iorigin", "Z": "Manzini", "q": "quiet"}
TEXTS = {"o": "odir", "p": "opfx", "S": "sdir", "s": "spfx", "J": "Joption"}
NUMBERS = {"n": "maxNodes", "m": "maxSAMem", "M": "sBuffSize",
           "i": "maxIter", "x": "pfxlen", "N": "nmerge"}

LABELS = {"czep": "czep (deprecated)", "noheap": "noheap (deprecated)"}


def number(text):
    """A number as an option gives it: 2^k, or decimal with an exponent."""
    return 1 << int(text[2:]) if text.startswith("2^") else int(float(text))


class Options:
    """One attribute for each option variable, plus the two positional values.
    Flags and numbers are 0, texts None, until given."""

    def __init__(self, arguments):
        for name in [*FLAGS.values(), *NUMBERS.values()]:
            setattr(self, name, 0)
        for name in TEXTS.values():
            setattr(self, name, None)
        positional = []
        words = iter(arguments)
        for word in words:
            letter = word[1:] if word.startswith("-") else None
            if letter in FLAGS:
                setattr(self, FLAGS[letter], 1)
            elif letter in TEXTS:
                setattr(self, TEXTS[letter], next(words))
            elif letter in NUMBERS:
                setattr(self, NUMBERS[letter], number(next(words)))
            else:
                positional.append(word)
        self.inputdir, self.inputfileprefix = positional

    def line(self):
        flags = [LABELS.get(name, name) for name in FLAGS.values()
                 if getattr(self, name) and name != "quiet"]
        values = [f"{name}={getattr(self, name)}"
                  for name in [*TEXTS.values(), *NUMBERS.values()]
                  if getattr(self, name)]
        items = "".join(item + " " for item in flags + values)
        return "merge options: " + (items or "none")
