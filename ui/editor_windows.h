#pragma once
// What the editor's windows share: the one object of each window class, reached through its
// global pointer, and the messages by which one window tells another. Every window header
// includes this one rather than another window's header.
//
// Each pointer is null until the main window creates its children (stage, timeline, viewer, in
// that order) and null again once it has deleted them, in the same order.

class CPWnd;
class CMain;
class CStage;
class CTime;
class CView;

extern CMain* pMain;    // the main window: menus, shortcuts, the key panel
extern CStage* pStage;  // the stage: the picture and the camera frame being edited
extern CTime* pTime;    // the timeline: pictures and keys along the show's frames
extern CView* pViewer;  // the viewer: what the camera sees at the current frame
// The main window's CPWnd while it exists, else null.
extern CPWnd* gMainWindowPtr;

// The window the editor's dialogs are drawn over and own: the stage, which covers the main
// window's content (a panel drawn on the main window itself would be hidden under it), or the
// main window while there is no stage.
CPWnd* EditorDialogOwner();

// Every window that exists paints anew, after the show was replaced or rendered from: the
// timeline first takes the show's new length.
void RedrawEditorWindows();

// A drag or edit on the stage has ended (the stage tells the timeline, the viewer tells both),
// so the timeline redraws its markers and every drag is cancelled.
constexpr unsigned int kMsgEditEnded = 1234532;
// The window asks to be closed by its owner (sent after 12345 on the way out).
constexpr unsigned int kMsgCloseWindow = 1008;
