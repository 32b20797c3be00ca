#pragma once
// The pictures of the program's own cursors, painted by code at first use: 32 x 32 cursor pixels,
// black shapes with a white outline so they read on any picture, transparent elsewhere; painted
// at the screen's pixel density, so they stay sharp on screens of 2 device pixels per pixel. For
// the portable layer's own files and tests.

#include <QCursor>
#include <QImage>

constexpr int kCursorHotSpot = 15;  // x and y of the hot spot in every picture, cursor pixels
constexpr int kLargestCursorScale = 4;

// The picture of cursor `image` (kCursorImagePlus or a program picture number of cursor.h) at
// `scale` device pixels per cursor pixel (1 to 4; the image's device pixel ratio says it); a
// null image for any other number.
QImage DrawCursorPicture(int image, int scale = 1);
// The whole scale a screen of this device pixel ratio needs: 1 up to 1.0, 2 up to 2.0, ...
int CursorScaleFor(qreal devicePixelRatio);
// The cursor made from that picture at the density of the densest screen, its hot spot at the
// centre of the shape.
QCursor MakeProgramCursor(int image);
