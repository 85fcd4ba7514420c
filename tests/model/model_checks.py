"""What the model holds itself to: answers taken straight from the texts of
the suffixes, and a reader of trees that shares nothing with their builder."""

import struct


def text(model, s):
  """The bits of a suffix."""
  return model.bits[s.input >> 2][2 * s.pos:]


def directEntry(a, b):
  """The LCP entry of two texts."""
  shorter = min(len(a), len(b))
  L = 0
  while L < shorter and a[L] == b[L]:
    L += 1
  return L << 1 | (L < shorter)


def checkEntry(model, entry, last, current):
  """The list's stored entry for `current` against the texts."""
  want = directEntry(text(model, last), text(model, current)) if last else 0
  assert entry == want, (last, current, entry, want)


def checkMerged(model):
  """The merged order against a plain sort of everything in the streams."""
  everything = []
  for j in range(model.k):
    model.sufls[j] = model.sufps[j] = model.sufBuffSize
    model.sufos[j] = 0
    s = model.getNextSuf(j)
    while s is not None:
      everything.append(s)
      s = model.getNextSuf(j)
  assert sorted(everything) == sorted(model.merged)
  texts = [text(model, s) for s in model.merged]
  assert texts == sorted(texts)
  assert model.tsuff == len(everything)
  if model.options.hpflag:  # which orders equal suffixes too
    keys = [(t, s.input >> 2) for t, s in zip(texts, model.merged)]
    assert keys == sorted(keys)


def checkTree(model, data, suffixes):
  """A tree as written, against the suffixes that it was made from."""
  nodes = list(struct.iter_unpack("<3I", data))
  visited = 0

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
    # A leaf that became this branching point moved to the end of the group.
    leaves = leaves[-1:] + leaves[:-1]
    children = [read(c, depth) for c in (left >> 2, right >> 2) if c]
    assert len(children) == 2 or head == 0 or (leaves and left >> 2)
    below = [[text(model, _suffix(model, s)) for s in c] for c in children]
    for texts in below:
      assert len({t[:depth] for t in texts}) == 1
    if len(children) == 2:
      assert [{t[depth] for t in b} for b in below] == [{"0"}, {"1"}]
    return leaves + [s for c in children for s in c]

  got = read(0, 0)
  want = [(s.input >> 2, s.input & 3, model.length(s)) for s in suffixes]
  assert got == want
  assert visited == len(nodes)
  first = text(model, suffixes[0])[0]
  assert nodes[0][1 if first == "0" else 2] >> 2


def _suffix(model, leaf):
  """The suffix that a leaf of a tree stands for."""
  number, flags, depth = leaf
  return type(model.merged[0])(number << 2 | flags,
                               (model.blengths[number] - depth) // 2, 0, 0)
