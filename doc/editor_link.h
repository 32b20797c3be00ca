#pragma once
// DocEditor: the editor's windows as the show document sees them. The editor implements it and
// attaches itself with CDoc::AttachEditor; with none attached (command line, tests) the document
// keeps the camera itself and nothing is drawn.

#include "doc/key.h"

class DocEditor {
public:
    virtual ~DocEditor() = default;

    // The camera being edited on the stage, which AddKey turns into a key of the show.
    virtual KeyStruct GetCurrentKey() const = 0;
    // The camera computed for the current frame becomes the stage's current key.
    virtual void SetCurrentKey(const KeyStruct& key) = 0;
    // Frames per timeline step; below 8 it widens the tolerance AddKey uses to find a key.
    virtual int GetTimelineScale() const = 0;

    // Redraws the stage, refreshes the viewer and the timeline and shows the frame's timecode.
    virtual void RefreshFrame(long frame) = 0;
    // The show's aspect ratio changed while a show was read (message 1002 to the viewer).
    virtual void AspectChanged() = 0;
    // The system beep.
    virtual void Beep() = 0;
    // The busy cursor while a picture loads (true), the arrow again afterwards (false).
    virtual void ShowBusy(bool busy) = 0;
};
