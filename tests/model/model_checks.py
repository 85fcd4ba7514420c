"""What the model holds itself to: answers taken straight from the texts of
the suffixes, and a reader of trees that shares nothing with their builder."""

import struct

from data_folder import lcp_entry


def checkMerged(model):
    """The merged order against a plain sort of everything in the streams, and
    the entries of the list against the texts."""
    merged = [suffix for suffix, _ in model.merged]
    assert sorted(merged) == sorted(sum(model.suffixes, []))
    assert model.count["nsuff"] == len(merged)
    texts = [model.text(s) for s in merged]
    assert texts == sorted(texts)
    if model.options.hpflag:  # which orders equal suffixes too
        keys = [(t, s.input >> 2) for t, s in zip(texts, merged)]
        assert keys == sorted(keys)
    else:
        entries = [entry for _, entry in model.merged]
        assert entries == [0] * bool(texts) + [
            lcp_entry(a, b) for a, b in zip(texts, texts[1:])]


def checkTree(model, data, suffixes):
    """A tree as written, against the suffixes that it was made from."""
    nodes = list(struct.iter_unpack("<3I", data))
    assert len(nodes) <= model.outBuffSize
    visited = 0

    def text(leaf):
        """The bits of the suffix that a leaf stands for."""
        number, _, depth = leaf
        return model.bits[number][model.blengths[number] - depth:]

    def read(head, depth):
        """The (input, flags, depth) below a group's head, in suffix order."""
        nonlocal visited
        edge, left, right = nodes[head]
        depth += edge
        group = [nodes[head]]
        while group[-1][1] & 2:
            group.append(nodes[head + len(group)])
        visited += len(group)
        assert all(e == edge for e, _, _ in group)
        assert all(l & 1 for _, l, _ in group[1:])
        leaves = [(l >> 2, r, depth) for _, l, r in group if l & 1]
        if left & 1:
            return leaves
        # A leaf that became this branching point moved to the group's end.
        leaves = leaves[-1:] + leaves[:-1]
        children = [read(c, depth) for c in (left >> 2, right >> 2) if c]
        assert len(children) == 2 or head == 0 or (leaves and left >> 2)
        below = [[text(leaf) for leaf in c] for c in children]
        for texts in below:
            assert len({t[:depth] for t in texts}) == 1
        if len(children) == 2:
            assert [{t[depth] for t in b} for b in below] == [{"0"}, {"1"}]
        return leaves + [s for c in children for s in c]

    assert read(0, 0) == [(s.input >> 2, s.input & 3, model.length(s))
                          for s in suffixes]
    assert visited == len(nodes)
    first = model.text(suffixes[0])[0]
    assert nodes[0][1 if first == "0" else 2] >> 2
