#include "ui/commands/key_commands.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/dialog/message_box.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/timeline/ctime.h"

namespace {

// Fields 0 to 8 of a key (XPos .. Ease) are the camera; 9 to 13 (PicStart .. Reserved) belong to
// the key's place in the show and stay.
void CopyCamera(const KeyStruct& from, KeyStruct& to)
{
    to.XPos = from.XPos;
    to.Spare1 = from.Spare1;
    to.YPos = from.YPos;
    to.Width = from.Width;
    to.VertExtra = from.VertExtra;
    to.Rot2 = from.Rot2;
    to.Rot3 = from.Rot3;
    to.Rotation = from.Rotation;
    to.Ease = from.Ease;
}

int CurrentPicture() { return pDoc->FindCurPic(gCurFrame); }

// The index of the key of `pic` at exactly `relative` frames, or -1.
int KeyAtFrame(int pic, long relative)
{
    for (int key = 0; key < pDoc->GetKeyCount(pic); ++key) {
        if (pDoc->keys[pic][key].Frame == relative)
            return key;
    }
    return -1;
}

}  // namespace

void GotoCurrentFrame()
{
    if (!pDoc)
        return;
    pDoc->GotoFrame(gCurFrame, true);
    if (pTime)
        pTime->Refresh();
    if (pMain)
        pMain->SetEditMenuOptions();
}

void UndoCommand()
{
    if (!pDoc)
        return;
    pDoc->UnDo();
    GotoCurrentFrame();
}

void RedoCommand()
{
    if (!pDoc)
        return;
    pDoc->ReDo();
    GotoCurrentFrame();
}

void CopyKeyCommand()
{
    if (!pDoc)
        return;
    int selection = pDoc->GetKeySelection();
    if (selection < 0)
        return;
    KeyStruct key{};
    pDoc->GetKey(selection, key, CurrentPicture());
    pDoc->clipboard.Put(key);
    if (pMain)
        pMain->SetEditMenuOptions();
}

void DeleteKeyCommand()
{
    if (!pDoc)
        return;
    int selection = pDoc->GetKeySelection();
    if (selection < 1)
        return;
    pDoc->DeleteKey(selection, CurrentPicture());
    GotoCurrentFrame();
    Sound(0);
}

void CutKeyCommand()
{
    if (!pDoc || pDoc->GetKeySelection() < 1)
        return;
    CopyKeyCommand();
    DeleteKeyCommand();
}

void PasteKeyCommand()
{
    if (!pDoc || !pDoc->clipboard.HoldsKey() || pDoc->picCount <= 0)
        return;
    int pic = CurrentPicture();
    long relative = gCurFrame - pDoc->GetPicStart(pic);
    int target = pDoc->GetKeySelection();
    if (target < 0) {
        pDoc->AddKey();
        target = KeyAtFrame(pic, relative);
        if (target < 0)
            return;  // the picture had no room for another key
    } else {
        Sound(0);
    }
    KeyStruct key{};
    pDoc->GetKey(target, key, pic);
    // Recorded as a swap with the old values, so undo puts the key back as it was.
    pDoc->Do(key, target, pic);
    CopyCamera(pDoc->clipboard.key, key);
    pDoc->SetKey(target, key, pic);
    GotoCurrentFrame();
}

void DeletePictureCommand()
{
    if (!pDoc)
        return;
    int pic = CurrentPicture();
    if (YesNoBox("Are you sure?", "Delete Picture"))
        pDoc->DeletePic(pic);
    GotoCurrentFrame();
}

void DeleteAllKeysCommand()
{
    if (!pDoc)
        return;
    int pic = CurrentPicture();
    if (YesNoBox("Are you sure?", "Delete All Keys") && pic >= 0 && pic < pDoc->picCount) {
        for (int key = pDoc->GetKeyCount(pic) - 1; key >= 1; --key)
            pDoc->DeleteKey(key, pic);
        // Read again, the picture sets key 0 afresh: the camera on the whole picture.
        FSpec file = pDoc->picSpec[pic];
        pDoc->LoadPicture(&file, pic, pDoc->GetPicStart(pic));
    }
    GotoCurrentFrame();
}

void UniformSpeedCommand()
{
    if (!pDoc)
        return;
    int pic = CurrentPicture();
    if (YesNoBox("Space keys at a uniform speed?", "Uniform Speed"))
        pDoc->ConstantMotion(pic);
    gCurFrame = 0;
    GotoCurrentFrame();
}
