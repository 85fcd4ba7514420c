#include "output/divider.h"

constinit DividerRecord divider = {};
