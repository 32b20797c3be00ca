#include "ui/commands/key_map.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/wnd/messages.h"
#include "ui/commands/key_commands.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

long Lower(long key) { return key >= 'A' && key <= 'Z' ? key - 'A' + 'a' : key; }

void StepFrame(long delta)
{
    if (!pDoc)
        return;
    pDoc->GotoFrame(gCurFrame + delta, false);
    if (pMain) {
        pMain->SetEditMenuOptions();
        pMain->Redraw();  // the key panel shows the frame's camera
    }
    if (pTime)
        pTime->Refresh();
    if (pViewer)
        pViewer->ShowCode(gCurFrame);
}

void SetViewerSpeed(int speed)
{
    if (pViewer)
        pViewer->SetSpeed(speed);
}

}  // namespace

int ShortcutCommand(long key, unsigned int msg)
{
    if (key < 60 || key > 126)
        return kShortcutNone;
    switch (Lower(key)) {
    case '<':
        return 1045;
    case '>':
        return 1044;
    case 'c':
        return 9000;
    case 'e':
        return 1010;
    case 'k':
        return 1013;
    case 'n':
        return 2005;
    case 'o':
        return 2004;
    case 'q':
        return msg == kMsgShortcut ? kShortcutClose : kShortcutNone;
    case 's':
        return kShortcutQuickSave;
    case 't':
        return msg == kMsgShortcut ? 1037 : kShortcutNone;
    case 'v':
        return 9002;
    case 'x':
        return 9001;
    case 'y':
        return 9005;
    case 'z':
        return 9004;
    case '~':
        return msg == kMsgKeyDown ? 1011 : kShortcutNone;
    default:
        return kShortcutNone;
    }
}

long NextKeyFrameAfter(long frame)
{
    if (!pDoc)
        return -1;
    for (int pic = 0; pic < pDoc->picCount; ++pic) {
        long start = pDoc->GetPicStart(pic);
        for (int key = 0; key < pDoc->GetKeyCount(pic); ++key) {
            long at = start + pDoc->keys[pic][key].Frame;
            if (at > frame)
                return at;
        }
    }
    return -1;
}

bool PlainKeyCommand(long key, unsigned int msg)
{
    switch (key) {
    case kCharDelete:
    case kCharBackspace:
        DeleteKeyCommand();
        return true;
    case 'R':
    case 'r':
    case 'J':
    case 'j':
        SetViewerSpeed(-1);
        return true;
    case 'K':
    case 'k':
        SetViewerSpeed(0);
        return true;
    case 'L':
    case 'l':
        SetViewerSpeed(1);
        return true;
    case '+':
        StepFrame(1);
        return true;
    case '-':
        StepFrame(-1);
        return true;
    case kCharTab: {
        long next = NextKeyFrameAfter(gCurFrame);
        if (next >= 0) {
            gCurFrame = next;
            GotoCurrentFrame();
        }
        return true;
    }
    case kCharReturn:
        if (msg != kMsgKeyDown || !pDoc)
            return false;
        pDoc->AddKey();
        GotoCurrentFrame();
        return true;
    default:
        return false;
    }
}
