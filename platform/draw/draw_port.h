#pragma once
// DrawPort: the 32-bit backing image a window draws into, and the current port that the drawing
// primitives paint on. Pixels are 0xFFRRGGBB words, top row first, so tests can read them back.

#include <cstdint>
#include <memory>

class DrawPort {
public:
    DrawPort();
    ~DrawPort();
    DrawPort(const DrawPort&) = delete;
    DrawPort& operator=(const DrawPort&) = delete;

    // A new white image of the given size (sides below 1 give an empty port); old pixels go.
    void Resize(int width, int height);
    int Width() const;
    int Height() const;
    // 0 outside the image.
    uint32_t PixelAt(int x, int y) const;
    // First word of row y, top row 0; null outside the image.
    uint32_t* Row(int y);

    // The drawing origin: the window point that lands on the image's top-left pixel. Drawing
    // calls take window coordinates and subtract it. A new image starts at (0, 0).
    void SetOrigin(int x, int y);
    int OriginX() const;
    int OriginY() const;

    struct Backing;  // the Qt image behind the port (draw_port_qt.h)
    Backing& GetBacking() { return *backing; }

private:
    std::unique_ptr<Backing> backing;
};

// The port the drawing primitives paint on; null draws nothing.
void SetDrawDC(DrawPort* port);
DrawPort* GetDrawDC();
