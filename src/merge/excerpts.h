// Comparisons of listed suffixes by excerpts of their strings. Included by
// merge/few_streams.cpp alone, once for each kind of processor, behind the
// steps that are written for it.
//
// Of sixteen strains sixteen suffixes stand together, and each is compared with
// several others. How far two of them agree cannot be foreseen: a loop over
// their words ends with a wrong guess nearly every time. An excerpt is cut from
// the string once, to begin with a bit of the suffix instead of a word of the
// string, and two of them are compared whole, without a branch.

// Whether stream k's listed (or next) suffix has an excerpt. Cuts one if need
// be, and if the suffix is long enough.
[[gnu::always_inline]] inline bool hasExcerpt(int k, const Suffix& suffix) {
  const uint64_t place = placeOf(suffix);
  if (excerptPlaces[k] == place) return true;
  // So the word behind the last one belongs to the string, too.
  if (remainingBits(suffix) <= kExcerptEnd) return false;
  const unsigned start = 2 * suffix.pos + kExcerptStart;
  cutWords(excerpts[k], binaryString[inputNumber(suffix)] + (start >> 5),
           start & 31);
  excerptPlaces[k] = place;
  return true;
}

// As compareEqualKeys, of a suffix of stream i and one of stream k.
[[gnu::always_inline]] inline Comparison compareListed(int i, const Suffix& a,
                                                       int k, const Suffix& b,
                                                       int known) {
  if (!excerptsHelp || known >= kExcerptEnd || !hasExcerpt(i, a) ||
      !hasExcerpt(k, b)) {
    const Comparison found = compareEqualKeys(a, b, known);
    excerptsHelp = found.common < kExcerptsHelp;
    return found;
  }
  const int from = firstBitExamined(a.pos, std::max(known, 64));
  const int word = firstDifference(excerpts[i], excerpts[k]);
  if (word == kExcerptWords) {
    const Comparison found = compareStrings(a, b, kExcerptEnd);
    tngb += (firstBitExamined(a.pos, kExcerptEnd) - from) >> 5;
    excerptsHelp = found.common < kExcerptsHelp;
    return found;
  }
  const uint32_t wordA = excerpts[i][word];
  const uint32_t wordB = excerpts[k][word];
  const int common =
      kExcerptStart + 32 * word + std::countl_zero(wordA ^ wordB);
  // Records can tell of more common bits than there are: those are not read.
  if (common < from) return compareEqualKeys(a, b, known);
  tngb += ((common - from) >> 5) + 1;
  return {common,
          Comparison::kFirstbit | (wordA > wordB ? Comparison::kAfter : 0)};
}
