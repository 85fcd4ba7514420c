#!/usr/bin/env python3
"""Takes a case of palvor_fuzz apart into the files of a data folder with the
prefix x, and makes a case of such files.

    case.py unpack tree CASE FOLDER      # prints the first bytes in hex
    case.py pack 813700 FOLDER CASE      # the same bytes, then the files

case_folder.h says what the bytes of a case mean. Cases of `prepare` hold no
folder: a byte of options, and the sequence file as it is.
"""

import struct
import sys
from pathlib import Path

KINDS = ["x.stlengths", "x.stblengths", "x.stplengths", "x_#.stbin",
         "x_#.stpsa", "x_#.stlcp", "x.stpsa", "x.stlcp", "x.stdiv",
         "x_#.stree"]
HEADS = {"array": 3, "tree": 3, "check": 1, "view": 3, "answer": 2}  # bytes


def section_byte(name):
    """The byte that stands for a file's name."""
    stem, ending = name.split(".")
    _, numbered, number = stem.partition("_")
    kind = KINDS.index(f"x{'_#' * bool(numbered)}.{ending}")
    above, number = divmod(int(number or 0), 16)
    return (kind + above * len(KINDS)) << 4 | number


def file_name(byte):
    above, kind = divmod(byte >> 4, len(KINDS))
    return KINDS[kind].replace("#", str(16 * above + (byte & 15)))


def pack(head, folder, case):
    data = bytes.fromhex(head)
    for path in sorted(Path(folder).iterdir()):
        content = path.read_bytes()
        byte = section_byte(path.name)
        data += struct.pack("<BH", byte, len(content)) + content
    Path(case).write_bytes(data)


def unpack(target, case, folder):
    data = Path(case).read_bytes()
    head, data = data[:HEADS[target]], data[HEADS[target]:]
    print(head.hex())
    Path(folder).mkdir(parents=True)
    while data:
        byte, size = struct.unpack("<BH", data[:3].ljust(3, b"\0"))
        with open(Path(folder, file_name(byte)), "ab") as file:
            file.write(data[3:3 + size])
        data = data[3 + size:]


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    _, command, *arguments = sys.argv
    {"pack": pack, "unpack": unpack}[command](*arguments)
