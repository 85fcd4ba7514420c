"""The files of a data folder, made straight from their definitions.

A suffix is (input, pos); strings are texts over A, C, G and T, their bits
texts of 0 and 1.
"""

import os
import struct

CODES = str.maketrans({"A": "00", "C": "01", "G": "10", "T": "11"})


def packed(words):
    """Little-endian 32-bit words."""
    return struct.pack(f"<{len(words)}I", *words)


def unpacked(data):
    """The whole 32-bit words of data."""
    count = len(data) // 4
    return list(struct.unpack(f"<{count}I", data[:4 * count]))


def words_of(bits):
    """The words that hold some bits, the last filled with zeros."""
    return [int(bits[i:i + 32].ljust(32, "0"), 2)
            for i in range(0, len(bits), 32)]


def lcp_entry(a, b):
    """What an LCP file says of two texts of bits."""
    shared = len(os.path.commonprefix([a, b]))
    return shared << 1 | (shared < min(len(a), len(b)))


def make_files(texts, arrays, origins, flag):
    """{name without the prefix: bytes}, the partitions file left out.

    arrays   the suffixes of each suffix array, in any order
    origins  the input that each calls its first
    flag     gives the two low bits of a record's input, which mean nothing
    """
    bits = [text.translate(CODES) for text in texts]
    files = {".stlengths": packed([len(text) for text in texts]),
             ".stblengths": packed([len(b) for b in bits])}
    for i, b in enumerate(bits):
        files[f"_{i}.stbin"] = packed(words_of(b) + [0])
    for j, suffixes in enumerate(arrays):
        ordered = sorted((bits[i][2 * pos:], i, pos) for i, pos in suffixes)
        files[f"_{j}.stpsa"] = b"".join(
            packed([(i - origins[j]) << 2 | flag(), pos,
                    *words_of(text[:64].ljust(64, "0"))])
            for text, i, pos in ordered)
        files[f"_{j}.stlcp"] = packed([0] * bool(ordered) + [
            lcp_entry(a[0], b[0]) for a, b in zip(ordered, ordered[1:])])
    return files


def write(path, data):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(data)
