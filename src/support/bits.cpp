#include "support/bits.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kSlots = 10;  // results of BitStr that stay valid

unsigned maskOf(int k) { return 1U << ((31 - k) & 31); }

int wordsOf(int n) { return n > 0 ? ((n - 1) >> 5) + 1 : 0; }

}  // namespace

int getBit(const unsigned* w, int k) { return (w[0] & maskOf(k)) != 0 ? 1 : 0; }

unsigned setBit(unsigned* w, int k) {
  w[0] |= maskOf(k);
  return maskOf(k);
}

int GetBit(const unsigned* v, int k) { return getBit(v + (k >> 5), k); }

int SetBit(unsigned* v, int k) {
  setBit(v + (k >> 5), k);
  return 0;
}

int OrBits(unsigned* dst, const unsigned* src, int n) {
  for (int i = 0; i < wordsOf(n); i++) dst[i] |= src[i];
  return 0;
}

int OrBits1(unsigned* dst, const unsigned* src, int n) {
  return OrBits(dst, src, n);
}

int OrBits2(unsigned* dst, const unsigned* src, int n) {
  return OrBits(dst, src, n);
}

int OrBits3(unsigned* dst, const unsigned* src, int n) {
  return OrBits(dst, src, n);
}

int AndBits(unsigned* dst, const unsigned* src, int n) {
  for (int i = 0; i < wordsOf(n); i++) dst[i] &= src[i];
  return 0;
}

int CopyBits(unsigned* dst, const unsigned* src, int n) {
  for (int i = 0; i < wordsOf(n); i++) dst[i] = src[i];
  return 0;
}

int CountBits(const unsigned* v, int n) {
  int count = 0;
  for (int i = 0; i < wordsOf(n); i++) count += std::popcount(v[i]);
  return count;
}

int AllBits(const unsigned*, int) { return 1; }

unsigned* NewBits(int n) {
  const auto words = static_cast<size_t>(std::max(wordsOf(n), 1));
  return static_cast<unsigned*>(std::calloc(words, sizeof(unsigned)));
}

int FreeBits(unsigned* v) {
  std::free(v);
  return 0;
}

int printBitSequence(const unsigned* w) {
  for (int k = 0; k < 32; k++) std::printf("%d", getBit(w, k));
  return std::printf(" %2d  %08X\n", CountBits(w, 1), w[0]);
}

const char* BitStr(const unsigned* v, int n) {
  static char slots[kSlots][33];
  static int next = 0;
  if (next == kSlots) next = 0;
  char* slot = slots[next++];
  const int length = std::clamp(n, 0, 32);
  for (int k = 0; k < length; k++) slot[k] = getBit(v, k) != 0 ? '1' : '0';
  slot[length] = '\0';
  return slot;
}
