"""The merge half of the model: the two ways to keep the streams in order.

Both yield every (suffix, LCP entry) in the merged order. An entry relates the
suffix to the one before it.
"""


def mergeByHeap(model):
    """Knows of no entries, and says 0."""
    streams = [iter(suffixes) for suffixes in model.suffixes]
    Suffixes = {}
    Heap = []  # of streams

    def after(a, b):
        model.count["nncmp"] += 1
        sa, sb = Suffixes[a], Suffixes[b]
        model.ZEPCompare(sa, sb)
        return ((model.text(sa), sa.input >> 2) >
                (model.text(sb), sb.input >> 2))

    def advance(k):
        Suffixes[k] = next(streams[k], None)
        if Suffixes[k] is None:
            return False
        model.count["nsuff"] += 1
        return True

    def swap(p, q):
        Heap[p], Heap[q] = Heap[q], Heap[p]

    for k in range(len(streams)):
        if not advance(k):
            continue
        p = len(Heap)
        Heap.append(k)
        while p > 0 and after(Heap[(p - 1) // 2], k):
            swap(p, (p - 1) // 2)
            p = (p - 1) // 2
    while Heap:
        k = Heap[0]
        yield Suffixes[k], 0
        if not advance(k):
            Heap[0] = Heap[-1]
            Heap.pop()
        p, c = 0, 1
        while c < len(Heap):
            if c + 1 < len(Heap) and after(Heap[c], Heap[c + 1]):
                c += 1
            if not after(Heap[p], Heap[c]):
                break
            swap(p, c)
            p, c = c, 2 * c + 1


def mergeByList(model):
    """Each stream of the list knows its entry after the stream before it, or
    for the first, after the suffix that was emitted last."""
    count = model.count
    streams = [iter(suffixes) for suffixes in model.suffixes]
    entries = [iter(stream[1:]) for stream in model.entries]
    Suffixes = {}
    LLCP = {}
    LOCP = {}  # the entry after the same stream's suffix before
    order = []  # of streams

    def add(k, entry):
        """Puts a stream in its place; its entry after the last emitted."""
        count["nsuff"] += 1
        LOCP[k] = entry
        place = 0
        for cur in order:
            count["nlcmp"] += 1
            L = entry >> 1
            if L > LLCP[cur] >> 1:
                break
            if L == LLCP[cur] >> 1:
                new = model.ZEPCompare(Suffixes[cur], Suffixes[k], L)
                count["nncmp"] += 1
                count["nnac"] += new >> 1 >= 64
                count["nnrc"] += new >> 1 >= L + 64
                count["nnoc"] += LOCP[cur] == LLCP[cur]
                if model.text(Suffixes[cur]) > model.text(Suffixes[k]):
                    entry, LLCP[cur] = LLCP[cur], new
                    break
                entry = new
            place += 1
        LLCP[k] = entry
        order.insert(place, k)

    for k, stream in enumerate(streams):
        Suffixes[k] = next(stream, None)
        if Suffixes[k] is not None:
            add(k, 0)
    while order:
        k = order.pop(0)
        last = Suffixes[k]
        yield last, LLCP[k]
        Suffixes[k] = next(streams[k], None)
        if Suffixes[k] is not None:
            add(k, next(entries[k]) if model.options.Manzini
                else model.ZEPCompare(last, Suffixes[k]))
