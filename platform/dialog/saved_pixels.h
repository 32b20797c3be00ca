#pragma once
// The pixels a modal panel (a described dialog, the colour picker) covers on its window's
// backing image, kept while the panel is up and put back when it goes.

#include <cstdint>
#include <vector>

#include "platform/base/types.h"

class DrawPort;

class SavedPixels {
public:
    // Keeps the pixels of `rect` (window pixels, right and bottom edges included, as the panel's
    // frame covers them) that lie on `port`'s image. A null port keeps nothing.
    void Save(DrawPort* port, const tagRECT& rect);
    // Puts them back, unless the image has changed size since (its old pixels are gone then).
    void Restore();

private:
    DrawPort* port = nullptr;
    int portWidth = 0;
    int portHeight = 0;
    int left = 0;  // image pixels, top row 0
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;
};
