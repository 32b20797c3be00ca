#pragma once
// The user's handling of the frames the layer draws: dragging a window by its title bar,
// resizing it by its size box, clicking its close box. Between the press and the release the
// pointer belongs to the tracking.

#include <QPoint>

class CPWnd;

enum class FrameAction { TitleBar, SizeBox, CloseBox };

constexpr int kSmallestWindowWidth = 60;
constexpr int kSmallestWindowHeight = 80;

// Starts tracking at the press (screen pixels).
void StartTracking(FrameAction action, CPWnd* window, QPoint global);
bool IsTracking();
// A pointer move while the button is held: the window follows a title-bar drag, an outline
// shows the size being given.
void TrackPointer(QPoint global);
// The release ends the tracking:
//   title bar  the window stays where it was dragged; it gets 1002
//   size box   the frame takes the size reached, at least 60 x 80 and at most the screen; if
//              the size changed, the window gets 1001 and then its paint message
//   close box  released inside the box: 1007 to the main window
void FinishTracking(QPoint global);
