#include "platform/util/colour.h"

#include <algorithm>

long gun(long m1, long m2, long hue)
{
    // One wrap only: the callers offset a hue in 0-240 by at most 80 either way.
    if (hue < 0)
        hue += 240;
    else if (hue > 240)
        hue -= 240;

    if (hue < 40)
        return m1 + ((m2 - m1) * hue + 20) / 40;
    if (hue < 120)
        return m2;
    if (hue < 160)
        return m1 + ((m2 - m1) * (160 - hue) + 20) / 40;
    return m1;
}

void HLS2RGB(long h, long l, long s, long* r, long* g, long* b)
{
    long m2 = l <= 120 ? (l * (240 + s) + 120) / 240 : l + s - (l * s + 120) / 240;
    long m1 = 2 * l - m2;
    *r = (gun(m1, m2, h + 80) * 255 + 120) / 240;
    *g = (gun(m1, m2, h) * 255 + 120) / 240;
    *b = (gun(m1, m2, h - 80) * 255 + 120) / 240;
}

void RGB2HLS(long r, long g, long b, long* h, long* l, long* s)
{
    // Clamped so that the divisors below (max + min, 510 - max - min) are never 0 unless the
    // colour is grey, which is answered before them.
    r = std::clamp(r, 0L, 255L);
    g = std::clamp(g, 0L, 255L);
    b = std::clamp(b, 0L, 255L);

    long max = std::max({r, g, b});
    long min = std::min({r, g, b});
    *l = ((max + min) * 240 + 255) / 510;

    if (max == min) {
        // Grey has hue 0 on purpose rather than an "undefined" marker: callers store it as is.
        *s = 0;
        *h = 0;
        return;
    }

    long range = max - min;
    if (*l <= 120)
        *s = (range * 240 + (max + min) / 2) / (max + min);
    else
        *s = (range * 240 + (510 - max - min) / 2) / (510 - max - min);

    auto delta = [&](long x) { return ((max - x) * 40 + range / 2) / range; };
    long hue;
    if (r == max)
        hue = delta(b) - delta(g);
    else if (g == max)
        hue = 80 + delta(r) - delta(b);
    else
        hue = 160 + delta(g) - delta(r);

    // 240 itself is kept: only values beyond the circle are wrapped.
    if (hue < 0)
        hue += 240;
    else if (hue > 240)
        hue -= 240;
    *h = hue;
}
