#pragma once
// The pictures of the program's own cursors, painted by code at first use: 32 x 32 pixels, black
// shapes with a white outline so they read on any picture, transparent elsewhere. For the
// portable layer's own files and tests.

#include <QCursor>
#include <QImage>

constexpr int kCursorHotSpot = 15;  // x and y of the hot spot in every picture

// The picture of cursor `image` (kCursorImagePlus or a program picture number of cursor.h);
// a null image for any other number.
QImage DrawCursorPicture(int image);
// The cursor made from that picture, its hot spot at the centre of the shape.
QCursor MakeProgramCursor(int image);
