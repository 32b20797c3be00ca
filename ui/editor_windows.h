#pragma once
// What the editor's windows share: the one object of each window class, reached through its
// global pointer, and the message by which one window tells another. Every window header
// includes this one rather than another window's header.
//
// Each pointer is null until the main window creates its children (stage, timeline, viewer, in
// that order) and null again once it has deleted them, in the same order.

class CMain;
class CStage;
class CTime;
class CView;

extern CMain* pMain;     // the main window: menus, shortcuts, the key panel
extern CStage* pStage;   // the stage: the picture and the camera frame being edited
extern CTime* pTime;     // the timeline: pictures and keys along the show's frames
extern CView* pViewer;   // the viewer: what the camera sees at the current frame

// The stage to the timeline: a mouse edit of the camera has ended, so the markers are redrawn.
constexpr unsigned int kMsgStageEditEnded = 1234532;
