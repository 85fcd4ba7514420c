#include "run/values.h"

constinit int ninputs = 0;
constinit int nparts = 0;
constinit unsigned* lengths = nullptr;
constinit unsigned* blengths = nullptr;
constinit unsigned* plengths = nullptr;
constinit int sufBuffSize = 0;
constinit int outBuffSize = 0;
constinit char stringPrefix[kPathSize] = {};
constinit char plengthsFileName[kPathSize] = {};
constinit char sarrayPrefix[kPathSize] = {};
constinit char streePrefix[kPathSize] = {};
constinit int* suffixArrayFiles = nullptr;
constinit int dividersFile = -1;
constinit int realt = 0;
