"""The tree half of the model: partition trees, their walks, their hash sets
and the files that they go to.

A TreeNode is a list of its three words, and everything names a record by its
index. `treeBuff` holds only the records in use, so nnode is its length.
"""

import struct

import model_checks

EDGE, LEFT, RIGHT = 0, 1, 2
LEAF_BIT, NEXT_BIT = 1, 2
SLOTS = 319993  # of one hash set
MAX_PATHLEN = 1024


class TreeError(Exception):
  """palvor must stop with this message."""


class HashSet:
  """One set of the compaction statistics: counts, and the slots in use."""

  def __init__(self):
    self.hset = self.hacc = self.hcol = 0
    self.slots = {}

  def add(self, key):
    self.hset += 1
    h = key % SLOTS if key >= 0 else -(-key % SLOTS)
    if h < 0:
      h = (159996 - h) % SLOTS
    while self.slots.get(h, key) != key:
      h = (h + 113) % SLOTS
      self.hcol += 1
    if h not in self.slots:
      self.slots[h] = key
      self.hacc += 1


class Trees:
  """The tree under construction, and the flush that ends it."""

  def __init__(self, model):
    self.model = model
    self.options = model.options
    size = model.treeBuffSize
    model.allocate(size, 12)
    if self.options.reorder:
      model.allocate(size, 12)
    model.allocate(MAX_PATHLEN, 16)
    self.lastPath = [(0, 0)]  # (record, depth)
    self.firstPrefix = self.tree = 0
    self.startTree()

  def startTree(self):
    self.treeBuff = [[0, 0, 0]]
    self.case3 = self.case4 = self.case6 = 0
    self.hasht = [HashSet(), HashSet(), HashSet()]
    self.suffixes = []  # of this tree, for the checks

  @property
  def nnode(self):
    return len(self.treeBuff)

  # --- Records ---

  def isLeaf(self, n):
    return self.treeBuff[n][LEFT] & LEAF_BIT

  def hasNext(self, n):
    return self.treeBuff[n][LEFT] & NEXT_BIT

  def child(self, n, side):
    return self.treeBuff[n][side] >> 2

  def setChild(self, n, side, index):
    self.treeBuff[n][side] = index << 2 | self.treeBuff[n][side] & 3

  def setNext(self, n):
    self.treeBuff[n][LEFT] |= NEXT_BIT

  def append(self, edge, left=0, right=0):
    self.treeBuff.append([edge, left, right])
    assert self.nnode <= self.model.treeBuffSize
    return self.nnode - 1

  def appendLeaf(self, s, edge):
    self.suffixes.append(s)
    return self.append(edge, LEAF_BIT | s.input >> 2 << 2, s.input & 3)

  # --- Construction ---

  def insertFirst(self, s):
    """Case 1: the tree holds only its root."""
    self.firstPrefix = s.prefix0
    self.tree = self.model.ntree
    length = self.model.length(s)
    leaf = self.appendLeaf(s, length)
    self.setChild(0, RIGHT if s.prefix0 >> 31 else LEFT, leaf)
    self.lastPath[1:] = [(leaf, length)]

  def insert(self, s, lcp, fb):
    length = self.model.length(s)
    if lcp == length:
      self.insertEqual(s, lcp)
      return
    j = self.walkBack(lcp)
    P, d = self.lastPath[j]
    if d < lcp:
      self.splitEdge(s, length, lcp, j)
      return
    if self.isLeaf(P):
      leaf = self.extendLeaf(s, length - lcp, P, fb)
    else:
      leaf = self.branch(s, length - lcp, P, fb)
    self.setPath(j, [(leaf, length)])

  def setPath(self, j, entries):
    """Keeps the path up to entry j and puts `entries` after it."""
    self.lastPath[j + 1:] = entries
    self.model.maxPath = max(self.model.maxPath, len(self.lastPath))

  def insertEqual(self, s, lcp):
    """Case 3: the suffix before it again, from another input."""
    self.case3 += 1
    n = self.appendLeaf(s, lcp - self.lastPath[-2][1])
    self.setNext(n - 1)

  def walkBack(self, lcp):
    """The path entry below which the suffix belongs."""
    t = len(self.lastPath) - 1
    j = t
    while j > 0 and self.lastPath[j][1] > lcp:
      if j < t:
        self.register(j)
      j -= 1
    return j

  def splitEdge(self, s, length, lcp, j):
    """Case 6: the suffix leaves inside the edge below P."""
    P, d = self.lastPath[j]
    self.case6 += 1
    if self.isLeaf(P):
      raise TreeError("leaf node above split?? nnode=%d nsuff=%d" % (
          self.nnode, self.model.nsuff))
    side = RIGHT if self.child(P, RIGHT) else LEFT
    Q = self.child(P, side)
    if Q == 0:
      raise TreeError("problem in case 6")
    M = self.append(lcp - d)
    leaf = self.appendLeaf(s, length - lcp)
    self.setChild(M, LEFT, Q)
    self.setChild(M, RIGHT, leaf)
    self.setChild(P, side, M)
    edge = self.treeBuff[Q][EDGE] - (lcp - d)
    member = Q
    self.treeBuff[Q][EDGE] = edge
    while self.hasNext(member):
      member += 1
      self.treeBuff[member][EDGE] = edge
    self.addHT(0, Q - M)
    if not self.isLeaf(Q):
      self.addHT(2, edge)
    self.setPath(j, [(M, lcp), (leaf, length)])

  def extendLeaf(self, s, edge, P, fb):
    """Case 4: the suffix before it is a proper prefix of this one."""
    self.case4 += 1
    head = self.treeBuff[P]
    n = self.append(head[EDGE], head[LEFT] & ~NEXT_BIT, head[RIGHT])
    head[LEFT], head[RIGHT] = NEXT_BIT, 0
    self.setNext(n - 1)
    for r in range(P + 1, n + 1):
      self.treeBuff[r][EDGE] = head[EDGE]
    leaf = self.appendLeaf(s, edge)
    self.setChild(P, RIGHT if fb else LEFT, leaf)
    return leaf

  def branch(self, s, edge, P, fb):
    """Case 5: a right child for an internal record."""
    L = self.child(P, LEFT)
    if L:
      self.addHT(0, L - P)
      if not self.isLeaf(L):
        self.addHT(2, self.treeBuff[L][EDGE])
    leaf = self.appendLeaf(s, edge)
    if fb != 1:
      raise TreeError("firstbit %d, node %d, nsuff %d" % (
          fb, self.nnode, self.model.nsuff))
    if self.child(P, RIGHT):
      raise TreeError("firstbit child (fb=%d), nsuff=%d" % (
          fb, self.model.nsuff))
    self.setChild(P, RIGHT, leaf)
    return leaf

  # --- Compaction statistics ---

  def addHT(self, which, key):
    if self.options.compact:
      self.hasht[which].add(key)

  def register(self, m):
    """The link from path entry m to the one after it."""
    (P, dP), (Q, dQ) = self.lastPath[m], self.lastPath[m + 1]
    self.addHT(1 if self.child(P, RIGHT) else 0, Q - P)
    if not self.isLeaf(Q):
      self.addHT(2, dQ - dP)

  def finalSplit(self):
    for i in range(len(self.lastPath) - 2, -1, -1):
      self.register(i)

  # --- Walks ---

  def dfs2(self, node, depth):
    """The largest node depth below a record at node depth `depth`."""
    deepest, stack = 0, [(node, depth)]
    while stack:
      node, depth = stack.pop()
      deepest = max(deepest, depth)
      if not self.isLeaf(node):
        stack += [(self.child(node, side), depth + 1)
                  for side in (LEFT, RIGHT) if self.child(node, side)]
    return deepest

  def dfs3(self, node):
    """Counts records and links below a group's head, in the order in which
    they are printed."""
    nleaf = ntrlf = nintr = nleft = nrght = nempt = ndupl = 0
    heads = [node]
    while heads:
      r, inGroup = heads.pop(), False
      while True:
        leaf = self.isLeaf(r)
        if leaf:
          nleaf += 1
          ntrlf += not inGroup
        else:
          nintr += not inGroup
          left, right = self.child(r, LEFT), self.child(r, RIGHT)
          nleft += left != 0
          nrght += right != 0
          heads += [c for c in (left, right) if c]
        if not self.hasNext(r):
          break
        if leaf:
          ndupl += 1
        else:
          nempt += 1
        r, inGroup = r + 1, True
    return nleaf, ntrlf, nintr, nleft, nrght, nempt, ndupl

  def dfs4(self, node, newtBuff):
    """Copies a record, its group and what is below them to newtBuff, and
    returns the place of the record there."""
    edge, left, right = self.treeBuff[node]
    p = len(newtBuff)
    leaf = left & LEAF_BIT
    copy = [edge, left if leaf else left & NEXT_BIT, right & 3 if leaf else 0]
    newtBuff.append(copy)
    if left & NEXT_BIT:
      self.dfs4(node + 1, newtBuff)
    if not leaf:
      for side in (LEFT, RIGHT):
        c = self.child(node, side)
        if c:
          copy[side] |= self.dfs4(c, newtBuff) << 2
    return p

  # --- Flush ---

  def closeTree(self, lastSuffix):
    if self.options.compact:
      self.finalSplit()
    self.flushTree(lastSuffix)
    self.startTree()

  def flushTree(self, lastSuffix):
    model = self.model
    records = self.treeBuff
    if self.options.reorder:
      records = []
      self.dfs4(0, records)
    d = max(self.dfs2(c, 1) for c in (self.child(0, LEFT),
                                      self.child(0, RIGHT)) if c)
    model.outputs[model.streePrefix + ".stdiv"] += struct.pack(
        "<IIiiH6x", lastSuffix.prefix0, self.firstPrefix, self.tree,
        self.nnode, d & 0xFFFF)
    data = b"".join(struct.pack("<3I", *r) for r in records)
    model.outputs["%s_%d.stree" % (model.streePrefix, self.tree)] = data
    alcp = model.llcp / model.nlcp if model.nlcp else float("nan")
    model.say("Tree %3d:  c3 %2d  c4 %2d  c6 %6d  maxd=%d (0 ms), "
              "alcp=%.0f, time 0 ms, real 0 ms" % (
                  model.ntree, self.case3, self.case4, self.case6, d, alcp))
    if self.options.compact:
      model.say("  nl/nt/ni/nl/nr/ne/nd=%d/%d/%d/%d/%d/%d/%d" % self.dfs3(0))
      model.say("  n/h/c={%s}" % ", ".join(
          "%d/%d/%d" % (h.hset, h.hacc, h.hcol) for h in self.hasht))
    if model.checked:
      model_checks.checkTree(model, data, self.suffixes)
    model.rollUp()
    model.ntree += 1
