#include "platform/dialog/modal_panel.h"

#include "platform/draw/draw_port.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/message_queue.h"
#include "platform/wnd/messages.h"

ModalPanel::ModalPanel(CPWnd* window)
    : owner(window), previousPort(GetDrawDC()), previousState(gDrawState), previousFont(pCurFont)
{
    GetDC(owner);
}

ModalPanel::ModalPanel(CPWnd* window, const tagRECT& covers) : ModalPanel(window) { Cover(covers); }

void ModalPanel::Cover(const tagRECT& covers) { saved.Save(GetDC(owner), covers); }

ModalPanel::~ModalPanel()
{
    saved.Restore();
    SetDrawDC(previousPort);
    gDrawState = previousState;
    pCurFont = previousFont;
}

void ModalPanel::Select() { GetDC(owner); }

PanelInput ModalPanel::Read()
{
    PanelInput input;
    long time = 0;
    tagPOINT point = {0, 0};
    GetAMessage(input.window, input.msg, input.wParam, input.lParam, time, point);
    input.at = point;
    if (input.window == owner && owner) {
        // Content pixels to window pixels, the ones the panel was drawn in.
        input.at.x = static_cast<int32_t>(int64_t(point.x) + owner->GetWindowOriginX());
        input.at.y = static_cast<int32_t>(int64_t(point.y) + owner->GetWindowOriginY());
    }
    return input;
}

PanelKey ReadPanelKey(const PanelInput& input)
{
    if (input.msg != kMsgKeyDown)
        return PanelKey::kNone;
    if (input.wParam == kCharEscape)
        return PanelKey::kCancel;
    if (input.wParam == kCharReturn)
        return PanelKey::kConfirm;
    return PanelKey::kNone;
}

void ModalPanel::HandOn(const PanelInput& input)
{
    if (input.window != owner || !owner)
        return;
    if (input.msg != kMsgMouseMoved && input.msg != kMsgButtonUp)
        return;
    tagPOINT point = input.at;
    DispatchAMessage(owner, input.msg, input.wParam, input.lParam, 0, point);
}

PanelEnd RunModalPanel(ModalPanel& panel, PanelClient& client)
{
    panel.Select();
    client.Draw();
    PanelEnd end = PanelEnd::kRunning;
    bool dragging = false;
    while (end == PanelEnd::kRunning) {
        PanelInput input = panel.Read();
        switch (input.msg) {
        case kMsgKeyDown: {
            PanelKey key = ReadPanelKey(input);
            if (key == PanelKey::kCancel)
                end = PanelEnd::kCancel;
            else if (key == PanelKey::kConfirm)
                end = PanelEnd::kConfirm;
            break;
        }
        case kMsgButtonDown:
            dragging = false;
            if (input.window != panel.owner)
                end = PanelEnd::kCancel;
            else
                end = client.Press(input.at, &dragging);
            break;
        case kMsgMouseMoved:
            if (dragging && input.window == panel.owner)
                client.Drag(input.at);
            else
                panel.HandOn(input);
            break;
        case kMsgButtonUp:
            if (dragging)
                dragging = false;
            else
                panel.HandOn(input);
            break;
        default:
            panel.HandOn(input);
            break;
        }
        if (end == PanelEnd::kRunning) {
            panel.Select();
            client.Draw();
        }
    }
    return end;
}
