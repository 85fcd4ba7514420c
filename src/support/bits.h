// Bit vectors in arrays of 32-bit words, in the bit order of the packed
// strings (sources/packing.h): bit k lies in word k / 32, at bit position
// 31 - k % 32, so that bit 0 is the top bit of word 0.
//
// A vector of n bits has ((n - 1) >> 5) + 1 words, none for n below 1. The
// word-wise routines take whole words: bits past n in the last word take part.
// Nothing is checked: the caller owns the vectors and vouches for their
// lengths. The merge uses none of this; tools and checks do.

#ifndef PALVOR_SUPPORT_BITS_H_
#define PALVOR_SUPPORT_BITS_H_

// Bit k modulo 32 of the single word w[0]: reads it (0 or 1), or sets it and
// returns the mask that did.
int getBit(const unsigned* w, int k);
unsigned setBit(unsigned* w, int k);

// Bit k (0 or more) of vector v: reads it (0 or 1), or sets it and returns 0.
int GetBit(const unsigned* v, int k);
int SetBit(unsigned* v, int k);

// dst |= src, dst &= src, dst = src, word by word; dst and src may be the same.
// All return 0. The numbered forms do what OrBits does.
int OrBits(unsigned* dst, const unsigned* src, int n);
int OrBits1(unsigned* dst, const unsigned* src, int n);
int OrBits2(unsigned* dst, const unsigned* src, int n);
int OrBits3(unsigned* dst, const unsigned* src, int n);
int AndBits(unsigned* dst, const unsigned* src, int n);
int CopyBits(unsigned* dst, const unsigned* src, int n);

// Number of 1 bits in the words of v.
int CountBits(const unsigned* v, int n);

// Always 1.
int AllBits(const unsigned* v, int n);

// A zeroed vector of n bits, null on failure; it does not count as memory used
// (support/memory.h). FreeBits releases it and returns 0.
unsigned* NewBits(int n);
int FreeBits(unsigned* v);

// Prints the 32 bits of w[0] to standard output, the top bit first, then the
// number of 1 bits and the word in hexadecimal. Returns the character count of
// that last part.
int printBitSequence(const unsigned* w);

// The first min(n, 32) bits of v, as text. The results of the last ten calls
// stay valid.
const char* BitStr(const unsigned* v, int n);

#endif  // PALVOR_SUPPORT_BITS_H_
