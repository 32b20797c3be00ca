#pragma once
// The program's window messages: the `msg` of CPWnd::HandleEvent(msg, wParam, lParam), with what
// their two parameters carry. Points are in the receiving window's content coordinates (pixels,
// origin at the content's top-left corner, the drawing origin not applied).

// ---- Message numbers -----------------------------------------------------------------------
constexpr unsigned int kMsgResized = 1001;      // the user resized the window; 0, 0
constexpr unsigned int kMsgMoved = 1002;        // the user moved the window; 0, 0
constexpr unsigned int kMsgPaint = 1003;        // redraw the window; 0, 0
constexpr unsigned int kMsgClose = 1007;        // close or quit request, to the main window; 0, 0
constexpr unsigned int kMsgButtonDown = 1009;   // left (or right) button down; bits, point
constexpr unsigned int kMsgButtonUp = 1011;     // button up; bits, point
constexpr unsigned int kMsgSecondaryUp = 1012;  // right-button up, or the up that ends a double
                                                // click; bits, point
constexpr unsigned int kMsgMouseMoved = 1013;   // pointer moved, and the idle tick; bits, point
constexpr unsigned int kMsgShortcut = 1017;     // Command-key press, to the main window;
                                                // character, kShortcutMark
constexpr unsigned int kMsgKeyUp = 1018;        // key up; character, 0
constexpr unsigned int kMsgKeyDown = 1019;      // key down; character, 0
constexpr unsigned int kMsgCommand = 1020;  // menu command, to every window; identifier or -1, 0
constexpr unsigned int kMsgWheelVertical = 1021;    // wheel notches, positive downwards; point
constexpr unsigned int kMsgWheelHorizontal = 1022;  // wheel notches (also Shift+wheel), positive
                                                    // to the right; point
constexpr unsigned int kMsgEndLoop = 12345;         // ends MessageLoop; exit code

// ---- Modifier bits in wParam of mouse messages ----------------------------------------------
// The Command key is Ctrl on this platform.
constexpr long kModShift = 32;
constexpr long kModCommand = 64;  // 1013 also sets it for the Control (Alt) key

// lParam of kMsgShortcut.
constexpr long kShortcutMark = 2048;

// ---- The modifier state of the current key press (IsKeyPressed) ----------------------------
// Control is the Alt key on this platform.
constexpr int kKeyStateControl = 0x800;
constexpr int kKeyStateShift = 0x400;

// ---- Characters of keys without a printable character --------------------------------------
constexpr long kCharHome = 1;
constexpr long kCharEnter = 3;  // the keypad's Enter
constexpr long kCharEnd = 4;
constexpr long kCharBackspace = 8;
constexpr long kCharTab = 9;
constexpr long kCharPageUp = 11;
constexpr long kCharPageDown = 12;
constexpr long kCharReturn = 13;
constexpr long kCharEscape = 27;
constexpr long kCharLeft = 28;
constexpr long kCharRight = 29;
constexpr long kCharUp = 30;
constexpr long kCharDown = 31;
constexpr long kCharDelete = 127;  // forward delete

// ---- Points in lParam ------------------------------------------------------------------------
// (y << 16) | x with x in the low 16 bits, each coordinate as a signed 16-bit value, so a point
// left of or above the window (while the button is held) reads back negative.
inline long MakePointParam(int x, int y)
{
    unsigned int packed =
        ((static_cast<unsigned int>(y) & 0xFFFFu) << 16) | (static_cast<unsigned int>(x) & 0xFFFFu);
    return static_cast<long>(static_cast<int>(packed));
}
inline int PointParamX(long lParam) { return static_cast<short>(lParam & 0xFFFF); }
inline int PointParamY(long lParam) { return static_cast<short>((lParam >> 16) & 0xFFFF); }
