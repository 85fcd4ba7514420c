"""The tree half of the model: partition trees, their walks, their hash sets
and the files that they go to. Everything names a record by its index.
"""

import struct
from dataclasses import dataclass, replace

import model_checks

SLOTS = 319993  # of one hash set
MAX_PATHLEN = 1024


@dataclass
class Node:
    edge: int
    leaf: tuple = None  # (input, flags); None: an internal record
    left: int = 0  # children; 0: none, the root being nobody's child
    right: int = 0
    next: bool = False  # the group goes on with the record after it

    def children(self):
        return [child for child in (self.left, self.right) if child]

    def words(self, place):
        """The record's three words, if record i is written to place[i]."""
        if self.leaf:
            number, flags = self.leaf
            return self.edge, number << 2 | self.next << 1 | 1, flags
        return (self.edge, place[self.left] << 2 | self.next << 1,
                place[self.right] << 2)


class HashSet:
    """One set of the compaction statistics: counts, and the slots in use."""

    def __init__(self):
        self.hset = self.hcol = 0
        self.slots = {}

    def add(self, key):
        self.hset += 1
        h = (key if key >= 0 else 159996 - key) % SLOTS
        while self.slots.get(h, key) != key:
            h = (h + 113) % SLOTS
            self.hcol += 1
        self.slots[h] = key

    def __str__(self):
        return f"{self.hset}/{len(self.slots)}/{self.hcol}"


class Trees:
    """The tree under construction, and the flush that ends it."""

    def __init__(self, model):
        self.model = model
        self.options = model.options
        self.startTree()

    def write(self):
        """Puts all merged suffixes into trees."""
        for suffix, entry in self.model.merged:
            if self.suffixes:
                if self.options.hpflag:
                    entry = self.model.ZEPCompare(self.suffixes[-1], suffix)
                self.insert(suffix, entry >> 1, entry & 1)
            else:
                self.insertFirst(suffix)
            if len(self.treeBuff) > self.model.outBuffSize - 2:
                self.closeTree()
        if self.suffixes:
            self.closeTree()

    def startTree(self):
        self.treeBuff = [Node(0)]
        self.lastPath = [(0, 0)]  # (record, depth)
        self.case3 = self.case4 = self.case6 = 0
        self.lcps = []
        self.hasht = [HashSet(), HashSet(), HashSet()]
        self.suffixes = []

    # --- Construction ---

    def append(self, node):
        self.treeBuff.append(node)
        return len(self.treeBuff) - 1

    def appendLeaf(self, s, edge):
        self.suffixes.append(s)
        return self.append(Node(edge, leaf=(s.input >> 2, s.input & 3)))

    def insertFirst(self, s):
        """Case 1: the tree holds only its root."""
        length = self.model.length(s)
        leaf = self.appendLeaf(s, length)
        if s.prefix0 >> 31:
            self.treeBuff[0].right = leaf
        else:
            self.treeBuff[0].left = leaf
        self.lastPath.append((leaf, length))

    def insert(self, s, lcp, fb):
        self.countLCP(lcp)
        length = self.model.length(s)
        if lcp == length:
            self.insertEqual(s, lcp)
            return
        j = self.walkBack(lcp)
        P, d = self.lastPath[j]
        if d < lcp:
            below = self.splitEdge(s, length, lcp, P, d)
        elif self.treeBuff[P].leaf:
            below = self.extendLeaf(s, length, lcp, P, fb)
        else:
            below = self.branch(s, length, lcp, P)
        self.lastPath[j + 1:] = below
        self.model.maxPath = max(self.model.maxPath, len(self.lastPath))

    def countLCP(self, lcp):
        self.lcps.append(lcp)
        self.model.maxlcp = max(self.model.maxlcp, lcp)
        self.model.count.update(nlcp=1, llcp=lcp, nmlcp1=lcp > 255,
                                nmlcp2=lcp >= 32768)

    def insertEqual(self, s, lcp):
        """Case 3: the suffix before it again, from another input."""
        self.case3 += 1
        self.treeBuff[-1].next = True
        self.appendLeaf(s, lcp - self.lastPath[-2][1])

    def walkBack(self, lcp):
        """The path entry below which the suffix belongs."""
        last = len(self.lastPath) - 1
        j = last
        while j > 0 and self.lastPath[j][1] > lcp:
            if j < last:
                self.register(j)
            j -= 1
        return j

    # The next three return what the path holds after P.

    def splitEdge(self, s, length, lcp, P, d):
        """Case 6: the suffix leaves inside the edge below P."""
        self.case6 += 1
        parent = self.treeBuff[P]
        Q = parent.right or parent.left
        M = self.append(Node(lcp - d, left=Q))
        leaf = self.treeBuff[M].right = self.appendLeaf(s, length - lcp)
        if parent.right:
            parent.right = M
        else:
            parent.left = M
        for member in self.group(Q):
            self.treeBuff[member].edge -= lcp - d
        self.addLeft(M)
        return [(M, lcp), (leaf, length)]

    def extendLeaf(self, s, length, lcp, P, fb):
        """Case 4: the suffix before it is a proper prefix of this one."""
        self.case4 += 1
        head = self.treeBuff[P]
        end = replace(head, next=False)
        head.leaf = None
        self.treeBuff[-1].next = head.next = True
        self.append(end)
        leaf = self.appendLeaf(s, length - lcp)
        if fb:
            head.right = leaf
        else:
            head.left = leaf
        return [(leaf, length)]

    def branch(self, s, length, lcp, P):
        """Case 5: a right child for an internal record."""
        if self.treeBuff[P].left:
            self.addLeft(P)
        leaf = self.treeBuff[P].right = self.appendLeaf(s, length - lcp)
        return [(leaf, length)]

    # --- Compaction statistics ---

    def addLink(self, which, P, Q, edge):
        """A link of one kind, and the edge if it leads to an internal
        record."""
        self.hasht[which].add(Q - P)
        if not self.treeBuff[Q].leaf:
            self.hasht[2].add(edge)

    def addLeft(self, P):
        Q = self.treeBuff[P].left
        self.addLink(0, P, Q, self.treeBuff[Q].edge)

    def register(self, m):
        """The link from path entry m to the one after it."""
        (P, dP), (Q, dQ) = self.lastPath[m:m + 2]
        self.addLink(1 if self.treeBuff[P].right else 0, P, Q, dQ - dP)

    # --- Walks ---

    def group(self, head):
        """The records of the group that begins at one."""
        last = head
        while self.treeBuff[last].next:
            last += 1
        return range(head, last + 1)

    def depth(self, n):
        """The most records on a way down from a record, itself left out."""
        return max((1 + self.depth(child)
                    for child in self.treeBuff[n].children()), default=0)

    def traversal(self, head):
        """The records below a group's head: the group, then its children."""
        order = list(self.group(head))
        for child in self.treeBuff[head].children():
            order += self.traversal(child)
        return order

    def kinds(self):
        """Counts of records and links, in the order of their printing."""
        leaves = [n for n in self.treeBuff if n.leaf]
        internal = [n for n in self.treeBuff if not n.leaf]
        heads = self.treeBuff[:1] + [
            n for before, n in zip(self.treeBuff, self.treeBuff[1:])
            if not before.next]
        return [len(leaves),
                sum(n.leaf is not None for n in heads),
                sum(n.leaf is None for n in heads),
                sum(n.left > 0 for n in internal),
                sum(n.right > 0 for n in internal),
                sum(n.next for n in internal),
                sum(n.next for n in leaves)]

    # --- Flush ---

    def closeTree(self):
        """Ends the tree, and begins the next."""
        for m in reversed(range(len(self.lastPath) - 1)):
            self.register(m)
        model, tree = self.model, self.model.ntree
        order = range(len(self.treeBuff))
        if self.options.reorder:
            order = self.traversal(0)
        place = {record: at for at, record in enumerate(order)}
        data = b"".join(struct.pack("<3I", *self.treeBuff[n].words(place))
                        for n in order)
        model.outputs[f"{model.streePrefix}_{tree}.stree"] = data
        d = self.depth(0)
        model.outputs[model.streePrefix + ".stdiv"] += struct.pack(
            "<IIiiH6x", self.suffixes[-1].prefix0, self.suffixes[0].prefix0,
            tree, len(self.treeBuff), d & 0xFFFF)
        alcp = f"{sum(self.lcps) / len(self.lcps):.0f}" if self.lcps else "nan"
        model.say(f"Tree {tree:3d}:  c3 {self.case3:2d}  c4 {self.case4:2d}  "
                  f"c6 {self.case6:6d}  maxd={d} (0 ms), alcp={alcp}, "
                  "time 0 ms, real 0 ms")
        if self.options.compact:
            model.say("  nl/nt/ni/nl/nr/ne/nd=" +
                      "/".join(map(str, self.kinds())))
            model.say("  n/h/c={" + ", ".join(map(str, self.hasht)) + "}")
        model_checks.checkTree(model, data, self.suffixes)
        model.ntree += 1
        self.startTree()
