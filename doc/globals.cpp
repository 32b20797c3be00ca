#include "doc/globals.h"

long gFrameRate = 2997;
long gCurFrame = 0;
