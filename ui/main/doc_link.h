#pragma once
// The editor's windows as the document reaches them (DocEditor): the stage's current key, the
// timeline's scale, redrawing after a move of the current frame, the beep and the busy cursor.

#include "doc/editor_link.h"

class EditorDocLink : public DocEditor {
public:
    KeyStruct GetCurrentKey() const override;
    void SetCurrentKey(const KeyStruct& key) override;
    int GetTimelineScale() const override;
    void RefreshFrame(long frame) override;
    void AspectChanged() override;
    void Beep() override;
    void ShowBusy(bool busy) override;
};
