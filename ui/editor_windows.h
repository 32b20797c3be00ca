#pragma once
// The editor's windows as each other sees them: the one main window and its three children,
// reached through global pointers that each constructor sets and each destructor clears, and the
// few calls that go between windows.

class CPWnd;
class CMain;
class CStage;
class CTime;
class CView;

extern CMain* pMain;    // the main window (menus, commands, key panel)
extern CStage* pStage;  // where the camera is placed on the picture
extern CTime* pTime;    // the time line under the stage
extern CView* pViewer;  // what the camera sees
// The main window's CPWnd while it exists, else null.
extern CPWnd* gMainWindowPtr;

// A drag or edit on the stage has ended (the stage tells the timeline, the viewer tells both).
constexpr unsigned int kMsgEditEnded = 1234532;
// The window asks to be closed by its owner (sent after 12345 on the way out).
constexpr unsigned int kMsgCloseWindow = 1008;
