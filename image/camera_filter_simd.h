#pragma once
// Whether this build carries the camera filters' AVX2 loops. They are compiled per function with
// a target attribute and chosen at run time, so the program still runs on a processor without
// AVX2.

#if defined(__x86_64__) && defined(__GNUC__)
#define PX_CAMERA_AVX2 1
#include <immintrin.h>
#else
#define PX_CAMERA_AVX2 0
#endif
