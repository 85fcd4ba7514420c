#include "output/emitted.h"

constinit int treeBuffSize = 0;
constinit Suffix currSuffix = {};
constinit Suffix lastSuffix = {};
