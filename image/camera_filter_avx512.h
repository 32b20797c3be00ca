#pragma once
// The intrinsics for the camera filters' files compiled for AVX-512
// (camera_filter_crop_simd_avx512.cpp, camera_filter_rot_simd_avx512.cpp). GCC 12 warns of
// "uninitialized" registers inside its own AVX-512 intrinsics (their undefined pass-through
// operands); nothing of ours reads one, so the warning is off in the files that include this.

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <immintrin.h>
