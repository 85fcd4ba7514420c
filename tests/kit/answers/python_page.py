"""Runs the examples of docs/python.md on the folder of docs/formats.md.

    python_page.py PAGE PALVOR PALVOR_KIT

Ends with status 77 where there is no numpy.
"""

import doctest
import os
import subprocess
import sys
import tempfile


def main(page, palvor, kit):
    try:
        import numpy  # noqa: F401
    except ImportError:
        return 77
    os.environ["PATH"] = os.path.dirname(kit) + ":" + os.environ["PATH"]
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for name, text in [("x", "GATTC"), ("y", "GAT")]:
            with open(name + ".fa", "w") as file:
                file.write(f">{name}\n{text}\n")
        os.mkdir("m.ST")
        for command in [
            [kit, "prepare", "-o", "./", "-p", "ex", "--lcp", "x.fa", "y.fa"],
            [palvor, "./", "ex", "-n", "99"],
            [palvor, "./", "ex", "-a", "-l", "-p", "m"],
        ]:
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
        failures, tried = doctest.testfile(page, module_relative=False)
        os.chdir("/")
    return 0 if failures == 0 and tried > 20 else 1


if __name__ == "__main__":
    sys.exit(main(*map(os.path.abspath, sys.argv[1:])))
