#pragma once
// Stored pictures by number (button faces, the background tile, ...) and DrawBitmap, which draws
// one into a rectangle of the current drawing port. The code that owns a picture registers it
// once, either as pixels or as a function that paints it; this layer keeps no pictures of its
// own.

#include <cstdint>

#include "platform/base/types.h"

// Paints picture `picture` into rect (window pixels, right and bottom edges outside) on the
// current drawing port; false when it drew nothing.
using BitmapPainter = bool (*)(const tagRECT& rect, int picture);

// Keeps a copy of width x height pixels 0xAARRGGBB, top row first, as picture `picture`,
// replacing what was registered under that number. False, with nothing kept, for a null list or
// a side below 1.
bool RegisterBitmap(int picture, const uint32_t* pixels, int width, int height);
// Registers a painter instead (null forgets the picture).
bool RegisterBitmapPainter(int picture, BitmapPainter painter);
void ForgetBitmap(int picture);
bool HasBitmap(int picture);

// How DrawBitmap puts a pixel picture down (a painter paints as it likes).
constexpr int kBitmapCopy = 0;         // every pixel, its alpha ignored
constexpr int kBitmapTransparent = 1;  // pixels whose alpha is 0 leave the port alone
// Any other mode draws as kBitmapCopy.

// Draws picture `picture` scaled to rect (window pixels, right and bottom edges outside, as
// fills are): destination column i shows picture column trunc(i x picture width / rect width),
// rows likewise. False, with nothing drawn, for an unknown picture, an empty rectangle or no
// current port.
bool DrawBitmap(const tagRECT& rect, int picture, int mode = kBitmapCopy);
