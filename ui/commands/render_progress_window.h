#pragma once
// The editor's side of a movie render: a progress panel drawn over the stage (what is being
// made, a bar, the time to go), the frame's timecode in the viewer and the timeline following
// the frame. Between frames it reads the input that is waiting, so the windows keep painting;
// Esc asks the run to stop after the frame being made. Other input is dropped while the run
// lasts: a click must not edit the show that is being rendered.
//
// Coordinates are the stage's content pixels.

#include <chrono>
#include <string>

#include "output/render_driver.h"
#include "platform/base/types.h"

// Where the panel's parts go in a window of content `client`.
struct ProgressPanelLayout {
    tagRECT panel;  // the white panel, framed black
    tagRECT bar;    // the whole bar; its done part is ProgressDonePart
    int textX;      // the texts are centred on textX
    int textY;      // the text of what is made, above the bar
    int timeY;      // "Time to go", under the bar
};
ProgressPanelLayout MakeProgressPanelLayout(const tagRECT& client);
// The part of the bar that is done: `fraction` (clamped to 0..1) of its width from the left.
tagRECT ProgressDonePart(const tagRECT& bar, double fraction);

// Seconds still to go when `fraction` of a job took `elapsedSeconds`; -1 while nothing is done
// (no estimate yet).
long SecondsToGo(double elapsedSeconds, double fraction);
// "Time to go: mm:ss" for an estimate; "" for none.
std::string TimeToGoText(long seconds);

class EditorRenderProgress : public RenderProgress {
public:
    void Progress(double fraction, const char* text) override;
    void ShowFrame(long frame) override;
    void FrameWritten() override {}
    bool CancelRequested() override;

    // What the panel shows now.
    const std::string& Text() const { return text_; }
    const std::string& TimeText() const { return time_; }
    double Fraction() const { return fraction_; }

private:
    using Clock = std::chrono::steady_clock;
    void Draw();
    // Reads the input that is waiting (which also lets the windows paint): Esc is remembered,
    // the rest dropped.
    void ReadWaitingInput();

    std::string text_;
    std::string time_;
    double fraction_ = 0.0;
    // Each run (and each hold) starts its fraction at 0 again; the estimate is measured from
    // there.
    Clock::time_point phaseStart_ = Clock::now();
    bool cancelled_ = false;
};
