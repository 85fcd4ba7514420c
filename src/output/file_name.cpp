#include "output/file_name.h"

constinit char fileName[kFileNameSize] = {};
