#pragma once
// Plain types shared by every layer. Coordinates are signed 32-bit, in the coordinates of
// whoever holds them (window pixels for windows, picture pixels for pictures).

#include <cstdint>

struct tagRECT {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

struct tagPOINT {
    int32_t x;
    int32_t y;
};
