#pragma once
// Frame numbers out of float and double values: truncated toward zero, and safe for what a damaged
// show can hold (NaN reads as 0, values beyond a 32-bit frame as the nearest bound).

#include <algorithm>
#include <cmath>
#include <cstdint>

inline int32_t FrameOf(double value)
{
    if (std::isnan(value))
        return 0;
    return static_cast<int32_t>(std::clamp(std::trunc(value), -2147483648.0, 2147483647.0));
}

inline long FrameOfFloat(float value) { return FrameOf(static_cast<double>(value)); }

// Indices of the tables: a picture a show may use, and a slot including the scratch slot 64.
inline bool IsPicture(int pic)
{
    return pic >= 0 && pic < 64;  // kMaxPictures
}
