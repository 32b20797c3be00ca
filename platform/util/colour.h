#pragma once
// Hue-lightness-saturation colours. Hue, lightness and saturation run from 0 to 240, red, green
// and blue from 0 to 255. All arithmetic is integer, each division rounded by adding half the
// divisor first, so a colour converts the same way on every machine.

// One channel of an HLS colour on the 0-240 scale: m1 and m2 are the low and high levels
// HLS2RGB works out from lightness and saturation. The hue wraps once into 0-240 first.
long gun(long m1, long m2, long hue);

// HLS to red, green and blue. Saturation 0 gives grey through the same formulas.
void HLS2RGB(long h, long l, long s, long* r, long* g, long* b);
// Red, green and blue to HLS. Grey answers hue 0 and saturation 0. Channels outside 0-255 are
// taken at the nearest end of the range.
void RGB2HLS(long r, long g, long b, long* h, long* l, long* s);
