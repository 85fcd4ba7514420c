#include "run/options.h"

constinit int quiet = 0;
constinit int verbose = 0;
constinit int check = 0;
constinit int sarray = 0;
constinit int larray = 0;
constinit int bsuffix = 0;
constinit int czep = 0;
constinit int noprefix = 0;
constinit int noheap = 0;
constinit int hpflag = 0;
constinit int useFPs = 0;
constinit int iorigin = 0;
constinit int usemmap = 0;
constinit int reorder = 0;
constinit int compact = 0;
constinit int Manzini = 0;

constinit char* Joption = nullptr;

constinit int maxSAMem = 0;
constinit int sBuffSize = 0;
constinit int maxNodes = 0;
constinit int maxIter = 0;
constinit int pfxlen = 0;
constinit int nmerge = 0;
