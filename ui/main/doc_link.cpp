#include "ui/main/doc_link.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kCursorArrow = 1;
constexpr int kCursorWait = 11;

}  // namespace

KeyStruct EditorDocLink::GetCurrentKey() const
{
    if (pStage)
        return pStage->currentKey;
    return pDoc ? pDoc->currentCamera : KeyStruct{};
}

void EditorDocLink::SetCurrentKey(const KeyStruct& key)
{
    if (pStage)
        pStage->currentKey = key;
}

int EditorDocLink::GetTimelineScale() const
{
    return pTime ? pTime->scale : static_cast<int>(FramesPerSecond());
}

void EditorDocLink::RefreshFrame(long /*frame*/)
{
    if (pStage)
        pStage->Redraw();
    if (pTime)
        pTime->Redraw();
    if (pViewer)
        pViewer->Redraw();
    if (pMain) {
        // The key selection follows the current frame, and the Edit items follow it.
        pMain->SetEditMenuOptions();
        pMain->Redraw();
    }
}

void EditorDocLink::AspectChanged()
{
    if (pViewer)
        PostAMessage(pViewer, kMsgMoved, 0, 0);
}

void EditorDocLink::Beep() { Sound(0); }

void EditorDocLink::ShowBusy(bool busy) { ChangeCursor(busy ? kCursorWait : kCursorArrow); }
