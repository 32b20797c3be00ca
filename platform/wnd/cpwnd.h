#pragma once
// CPWnd: the base of every window of the program. A window has one message handler
// (HandleEvent, message numbers in messages.h) and one painter (OnDraw), and draws into its own
// 32-bit backing image, which is copied to the screen.
//
// Coordinates:
//   window rectangles (SetWinRect, GetWinRect)  screen pixels, for child windows too, so a
//                                               child is placed from its parent's rectangle;
//                                               the rectangle is the outer frame: the caption
//                                               bar the layer draws for a child window is
//                                               inside it (a top-level window's frame is its
//                                               area on the desktop, the desktop's own title
//                                               bar not counted)
//   content (GetClientRect, mouse points)       pixels from the content's top-left corner; the
//                                               scroll bars lie over its right and bottom edges
//
// Painting: when the content needs drawing (first show, Redraw, a new size, a scroll) the
// window's backing image becomes the current drawing port and the window gets message 1003; a
// handler that answers 0 to it gets OnDraw called instead. Drawing made at any other time (while
// dragging, say) goes to the same image and reaches the screen after the message.

#include "platform/base/types.h"

class DrawPort;

// Style bits of Create.
constexpr long kStyleFloating = 4;        // utility window with a 17-pixel title bar, floats
constexpr long kStyleCloseBox = 16;       // has a close box
constexpr long kStyleHorizontalBar = 32;  // horizontal scroll bar
constexpr long kStyleVerticalBar = 64;    // vertical scroll bar
constexpr long kStyleDocument = 128;      // 23-pixel title bar, close box and size box
constexpr long kStyleBehind = 256;        // close box; placed behind the other windows

// Bars for ScrollControl and AlignScrollBar: the style bit that made them.
constexpr int kScrollBarHorizontal = 32;
constexpr int kScrollBarVertical = 64;

constexpr int kScrollBarSize = 16;    // thickness of a scroll bar
constexpr int kDocumentCaption = 23;  // title bar of a style 128 window
constexpr int kFloatingCaption = 17;  // title bar of a style 4 window
constexpr int kInitialScrollMaximum = 100;
constexpr int kMaxTitle = 255;  // characters of a window title

class CPWnd {
public:
    CPWnd();
    virtual ~CPWnd();
    CPWnd(const CPWnd&) = delete;
    CPWnd& operator=(const CPWnd&) = delete;

    // The base answers 0 (not handled).
    virtual long HandleEvent(unsigned int msg, long wParam, long lParam);
    // The base draws nothing.
    virtual void OnDraw();

    // Makes a hidden window of 100 x 100 at the screen origin with an empty title and `style`,
    // inside `parent`'s content when a parent is given; adds the scroll bars the style asks for
    // (range 0 to 100); enters the window in the live-window list; the first window becomes
    // gFirstWin and a floating one gFloatWin; makes its backing image the current drawing port.
    // Answers 1, or 0 when there is no application to make windows in. A second Create
    // destroys the first window.
    int Create(CPWnd* parent, long style);
    // Disposes of the system window and takes the window out of the list.
    void Destroy();
    bool IsCreated() const;

    // 0 hides; 1 shows; 2 fills the screen (SetWinRect with gScreenRect's size at 0, 0).
    void Show(int mode);
    bool IsVisible() const;
    // The outer frame, in screen pixels; the content is sized to fill it; the scroll bars follow.
    void SetWinRect(int left, int top, int right, int bottom, bool show);
    void SetWinRect(const tagRECT& rect, bool show);
    void GetWinRect(tagRECT& rect) const;
    // The content: (0, 0, width, height).
    void GetClientRect(tagRECT& rect) const;

    // 23 for style 128, 17 for style 4, else 0.
    int GetCaptionSize() const;
    // Height of the menu bar of the window this one lies in (0 without one).
    int GetMenuSize() const;
    int GetScrollSize() const;
    // (outer width - content width) / 2.
    int GetBorderSize() const;

    // The title, cut to 255 characters (UTF-8).
    void SetTitle(const char* title);
    // At most max - 1 characters and a terminator.
    void GetTitle(char* out, int max) const;

    // Asks for a paint message (1003) for the rectangle; the window draws itself whole. The flag
    // is not used.
    void Redraw(const tagRECT& rect, bool erase);
    void Redraw();
    // The drawing origin: the point of the canvas that appears at the content's top-left.
    void SetWindowOrigin(int x, int y);
    int GetWindowOriginX() const;
    int GetWindowOriginY() const;

    // Resets the origin to (0, 0) and redraws the scroll bars; the flags are not used.
    void ShowScrollBar(bool horizontal, bool vertical);
    // The bars' values (0 without the bar).
    int GetViewScrollX() const;
    int GetViewScrollY() const;
    // Sets a bar's value, kept within 0 and the bar's maximum less the length of the content it
    // shows (GetScrollLimitX/Y); redraws the bar when asked. Does nothing without the bar.
    void SetViewScrollX(int value, bool redraw);
    void SetViewScrollY(int value, bool redraw);
    // The extent of the canvas the bars scroll over (both 100 at creation).
    void SetViewScrollRange(int maxX, int maxY);
    int GetScrollMaximumX() const;
    int GetScrollMaximumY() const;
    // The largest value of each bar: max(0, maximum - visible length), the visible length being
    // the content's width (height) less the other bar when there is one.
    int GetScrollLimitX() const;
    int GetScrollLimitY() const;
    // Moves bar kScrollBarHorizontal or kScrollBarVertical by `delta` pixels within its limits;
    // when the value changed, the window is redrawn (1003). Answers whether it changed.
    bool ScrollControl(int bar, long delta);
    // Lays a bar along its edge: the vertical one at x = width - 16 from y = -1, height + 1 long
    // (height - 15 when there is a horizontal bar); the horizontal one at y = height - 17 from
    // x = -1, width + 1 long (width - 15 when there is a vertical bar).
    void AlignScrollBar(int bar);

    // Do nothing: windows keep the place and order the user gives them.
    void FullScreen(bool on);
    void SetOrder(CPWnd* after, bool top);

    long GetStyle() const;
    bool IsFloat() const;
    // The window this one was created in, or null.
    CPWnd* GetParent() const;
    // The backing image; null before Create.
    DrawPort* GetPort();

    struct Impl;
    Impl* GetImpl() { return impl; }
    const Impl* GetImpl() const { return impl; }

private:
    Impl* impl;
};

// Makes the window's backing image the current drawing port and answers it (null for a null or
// not created window, and the current port is then left as it was).
DrawPort* GetDC(CPWnd* window);
// Nothing to give back: the port stays current until another is chosen.
void ReleaseDC(CPWnd* window, DrawPort* port);
