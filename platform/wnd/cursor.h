#pragma once
// Cursor shapes. A cursor kind chosen by the windows maps to one image: a system shape, or one
// of the program's own cursors (pictures 1001-1005 and 1007, drawn by cursor_pictures.cpp).
// The shape stays until the next ChangeCursor, over every window of the program.

// The images a kind can show. System shapes are negative; the program's own are their picture
// numbers.
constexpr int kCursorImageArrow = -1;
constexpr int kCursorImageIBeam = -2;
constexpr int kCursorImageCrosshair = -3;
constexpr int kCursorImagePlus = -4;
constexpr int kCursorImageWait = -5;
constexpr int kCursorImageMove = 1001;      // a drag that moves (the camera frame, a key 0)
constexpr int kCursorImageResize = 1002;    // a drag that resizes
constexpr int kCursorImageSlide = 1003;     // a drag along the time line
constexpr int kCursorImageVertical = 1004;  // a drag up and down
constexpr int kCursorImageRotate = 1005;    // a drag that turns
constexpr int kCursorImageTilt = 1007;      // a drag that tilts

// Kinds: 3 the I-beam; 2 the crosshair; 10 the plus sign; 11 the wait cursor; 5 and 13 picture
// 1001; 6 and 8 picture 1002; 9 picture 1003; 7 picture 1004; 12 picture 1005; 14 picture 1007;
// 0, 1, 4 and anything outside 0-14 the arrow.
int CursorImageForKind(int kind);
// Shows the image of `kind`.
void ChangeCursor(int kind);
// The image ChangeCursor showed last; the arrow before the first call.
int GetCursorImage();
