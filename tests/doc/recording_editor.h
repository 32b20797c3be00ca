#pragma once
// An editor that records what the document asks of it, standing in for the windows.

#include <vector>

#include "doc/editor_link.h"

class RecordingEditor : public DocEditor {
public:
    KeyStruct GetCurrentKey() const override { return stageKey; }
    void SetCurrentKey(const KeyStruct& key) override
    {
        stageKey = key;
        ++keysSet;
    }
    int GetTimelineScale() const override { return timelineScale; }
    void RefreshFrame(long frame) override { refreshedFrames.push_back(frame); }
    void AspectChanged() override { ++aspectChanges; }
    void Beep() override { ++beeps; }
    void ShowBusy(bool busy) override { busyCalls.push_back(busy); }

    KeyStruct stageKey{};
    int keysSet = 0;
    int timelineScale = 30;
    std::vector<long> refreshedFrames;
    int aspectChanges = 0;
    int beeps = 0;
    std::vector<bool> busyCalls;
};
