#include "ui/commands/render_progress_window.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/draw/font.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/message_queue.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr long kWhite = 0xFFFFFF;
constexpr long kBlack = 0x000000;
constexpr long kBarLeft = 0xC0C0C0;
constexpr long kBarDone = 0x606060;
constexpr int kPanelHalfWidth = 170;
constexpr int kPanelHalfHeight = 36;
constexpr int kMargin = 12;
constexpr int kBarHeight = 12;
// Input read between two frames at most: a flood of mouse moves must not hold up the render.
constexpr int kInputPerFrame = 256;

}  // namespace

ProgressPanelLayout MakeProgressPanelLayout(const tagRECT& client)
{
    int cx = client.left + (client.right - client.left) / 2;
    int cy = client.top + (client.bottom - client.top) / 2;
    ProgressPanelLayout layout{};
    layout.panel = {cx - kPanelHalfWidth, cy - kPanelHalfHeight, cx + kPanelHalfWidth,
                    cy + kPanelHalfHeight};
    layout.bar = {layout.panel.left + kMargin, cy - kBarHeight / 2, layout.panel.right - kMargin,
                  cy + kBarHeight / 2};
    layout.textX = cx;
    layout.textY = layout.bar.top - 20;
    layout.timeY = layout.bar.bottom + 4;
    return layout;
}

tagRECT ProgressDonePart(const tagRECT& bar, double fraction)
{
    double f = std::isnan(fraction) ? 0.0 : std::clamp(fraction, 0.0, 1.0);
    tagRECT done = bar;
    done.right = bar.left + static_cast<int>(f * (bar.right - bar.left));
    return done;
}

long SecondsToGo(double elapsedSeconds, double fraction)
{
    if (!(fraction > 0.0) || !(elapsedSeconds >= 0.0))
        return -1;
    double left = elapsedSeconds * (1.0 - std::min(fraction, 1.0)) / fraction;
    // A day is beyond any estimate worth showing, and keeps the cast in range.
    return static_cast<long>(std::min(left + 0.5, 86400.0));
}

std::string TimeToGoText(long seconds)
{
    if (seconds < 0)
        return "";
    char text[64];
    std::snprintf(text, sizeof text, "Time to go: %02ld:%02ld", seconds / 60, seconds % 60);
    return text;
}

void EditorRenderProgress::Progress(double fraction, const char* text)
{
    auto now = Clock::now();
    if (fraction <= 0.0 || fraction < fraction_)
        phaseStart_ = now;
    text_ = text ? text : "";
    fraction_ = fraction;
    double elapsed = std::chrono::duration<double>(now - phaseStart_).count();
    time_ = TimeToGoText(SecondsToGo(elapsed, fraction));
    Draw();
    // The holds write frames without asking to stop; reading here keeps the windows painting
    // through them too, and an Esc pressed meanwhile is seen at the next frame.
    ReadWaitingInput();
}

void EditorRenderProgress::ShowFrame(long frame)
{
    if (pViewer)
        pViewer->ShowCode(frame);
    if (pTime)
        pTime->Refresh();
}

bool EditorRenderProgress::CancelRequested()
{
    ReadWaitingInput();
    // Quitting the program also ends the run.
    return cancelled_ || gMacDone != 0;
}

void EditorRenderProgress::ReadWaitingInput()
{
    for (int i = 0; i < kInputPerFrame && !cancelled_; ++i) {
        CPWnd* window = nullptr;
        unsigned int msg = 0;
        long wParam = 0;
        long lParam = 0;
        long time = 0;
        tagPOINT point{0, 0};
        PeekAMessage(window, msg, wParam, lParam, time, point);
        if (msg == 0)
            break;
        if (msg == kMsgKeyDown && wParam == kCharEscape)
            cancelled_ = true;
    }
}

void EditorRenderProgress::Draw()
{
    if (!pStage || !GetDC(pStage))
        return;
    tagRECT client;
    pStage->GetClientRect(client);
    ProgressPanelLayout layout = MakeProgressPanelLayout(client);
    DrawBar(kWhite, layout.panel);
    DrawBox(kBlack, layout.panel, 1);
    DrawBar(kBarLeft, layout.bar);
    DrawBar(kBarDone, ProgressDonePart(layout.bar, fraction_));
    DrawBox(kBlack, layout.bar, 1);
    FontRecord* previous = pCurFont;
    SelectFont(Sans10, -1, 0);
    DrawText(kBlack, text_.c_str(), layout.textX, layout.textY, kTextCentre);
    DrawText(kBlack, time_.c_str(), layout.textX, layout.timeY, kTextCentre);
    if (previous)
        SelectFont(previous, -1, 0);
}
