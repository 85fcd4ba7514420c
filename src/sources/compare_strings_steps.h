// The steps of compareStrings. Included by sources/compare_strings.cpp alone,
// once for each kind of processor, behind the partSlices that is written for
// it.

// Compares slices kPatience to n - 1 of the stretches that begin at two places
// and are `common` bits long, passing over what is known to match.
[[gnu::noinline]] Parting partLongSlices(BitPlace placeA, Stretch a,
                                         BitPlace placeB, Stretch b, int n,
                                         int common) {
  Parting parting{};
  int readTo = n;  // slices before it were read
  int w = kPatience;
  while (w < n && !parting.differ) {
    const auto bits = static_cast<uint32_t>(32 * w);
    const uint32_t known = knownMatch({placeA.input, placeA.bit + bits},
                                      {placeB.input, placeB.bit + bits});
    if (known >= 32) {
      readTo = std::min(readTo, w);
      w += static_cast<int>(known / 32);
    }
    const int next = std::min(n, w + kPatience);
    if (w < next) parting = partSlices(a, b, w, next);
    w = next;
  }
  const int equal = parting.differ ? std::min(parting.bit, common) : common;
  rememberMatch(placeA, placeB, static_cast<uint32_t>(equal),
                static_cast<uint32_t>(std::min(32 * readTo, equal)));
  return parting;
}

// Compares two suffixes from a bit on that they share, and all before it.
[[gnu::always_inline]] inline Comparison compareFrom(const Suffix& a,
                                                     const Suffix& b,
                                                     unsigned from) {
  const int restA = remainingBits(a);
  const int restB = remainingBits(b);
  const int shorter = std::min(restA, restB);
  const BitPlace placeA = {inputNumber(a), 2 * a.pos + from};
  const BitPlace placeB = {inputNumber(b), 2 * b.pos + from};
  const Stretch readA(binaryString[placeA.input], placeA.bit);
  const Stretch readB(binaryString[placeB.input], placeB.bit);
  const int rest = shorter - static_cast<int>(from);
  const int words = ((rest - 1) >> 5) + 1;
  Parting parting{};
  // What is said to be known can be more than there is.
  if (words > 0) {
    parting = partSlices(readA, readB, 0, std::min(words, kPatience));
  }
  if (!parting.differ && words > kPatience) {
    parting = partLongSlices(placeA, readA, placeB, readB, words, rest);
  }
  if (parting.differ) {
    tngb += (parting.bit >> 5) + 1;
    const int after = parting.after ? Comparison::kAfter : 0;
    // Zero bits follow the end of a string, so a difference past the shorter
    // suffix's end still says which is the longer.
    if (parting.bit >= rest) return {shorter, after};
    return {static_cast<int>(from) + parting.bit,
            Comparison::kFirstbit | after};
  }
  tngb += std::max(words, 0);
  return {shorter, restA > restB    ? Comparison::kAfter
                   : restA == restB ? Comparison::kEqual
                                    : 0};
}

Comparison compareBehind(const Suffix& a, const Suffix& b, int known) {
  return compareFrom(a, b,
                     static_cast<unsigned>(firstBitExamined(a.pos, known)));
}
