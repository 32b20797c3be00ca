#include "ui/commands/picture_commands.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "image/cdib.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"
#include "platform/ini/settings.h"
#include "platform/wnd/shell.h"
#include "ui/commands/key_commands.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

// JPEG pictures are read by the platform importer, so the filter always offers them.
constexpr const char* kPictureFilter =
    "All Graphics Files|*.bmp;*.tga;*.tif;*.psd;*.jpg"
    "|BMP Files (*.bmp)|*.bmp|Targa Files (*.tga)|*.tga|TIFF Files (*.tif)|*.tif"
    "|Photoshop Files (*.psd)|*.psd"
    "|Jpeg Files (*.jpg)|*.jpg"
    "|All Files (*.*)|*.*|";

void ShowViewer(bool on)
{
    if (pViewer)
        pViewer->Show(on ? 1 : 0);
}

}  // namespace

PictureSlot ChoosePictureSlot(const CDoc& doc, long target, int timelineScale, long fps)
{
    if (doc.picCount <= 0)
        return {0, 0};
    long near = fps > 0 ? 6L * timelineScale / fps : 0;
    for (int pic = 0; pic < doc.picCount; ++pic) {
        long start = doc.GetPicStart(pic);
        if (start <= target && start + near > target)
            return {pic, target};
    }
    if (doc.picCount >= kMaxPictures)
        return {-1, target};
    int last = doc.picCount - 1;
    long lastStart = doc.GetPicStart(last);
    if (lastStart >= target) {
        int keys = doc.GetKeyCount(last);
        target = lastStart + (keys > 0 ? doc.keys[last][keys - 1].Frame : 0) + fps;
    }
    return {doc.picCount, target};
}

const char* PictureFileFilter() { return kPictureFilter; }

void LoadPictureCommand(bool jump)
{
    if (!pDoc)
        return;
    long target = pDoc->picCount > 0 ? gCurFrame : 0;
    FSpec folder{};
    RememberedFolder(&folder);
    FSpec file{};
    ShowViewer(false);
    bool chosen = OpenFileDialog(pMain, &file, kPictureFilter, ".bmp",
                                 folder.name[0] ? &folder : nullptr, false);
    if (!chosen) {
        ShowViewer(true);
        return;
    }
    // A file our readers cannot read adds nothing (the reader says why). The show itself keeps
    // pictures it cannot read now as placeholders, so the document would take it.
    {
        CDIB probe(1, 1, 24);
        if (probe.Load(&file, nullptr, true) != 1) {
            ShowViewer(true);
            return;
        }
    }
    int oldWidth = pDoc->image.GetWid();
    int oldHeight = pDoc->image.GetHgt();
    int scale = pTime ? pTime->scale : static_cast<int>(FramesPerSecond());
    PictureSlot place = ChoosePictureSlot(*pDoc, target, scale, FramesPerSecond());
    if (place.slot < 0) {
        // Sixty-four pictures and none to replace: nothing is added.
        Sound(0);
        ShowViewer(true);
        return;
    }
    bool replacing = place.slot < pDoc->picCount && pDoc->GetKeyCount(place.slot) > 1;
    if (replacing && pDoc->LoadPictureBuffer(place.slot, true)) {
        oldWidth = pDoc->image.GetWid();
        oldHeight = pDoc->image.GetHgt();
    }
    pDoc->LoadPicture(&file, place.slot, place.frame);
    RememberFolderOf(file);
    bool loaded = pDoc->picLoadState == 1;
    if (loaded && replacing) {
        int newWidth = pDoc->image.GetWid();
        int newHeight = pDoc->image.GetHgt();
        if ((newWidth != oldWidth || newHeight != oldHeight) &&
            YesNoBox("Match moves to new Picture size?", "Match Moves"))
            pDoc->RescaleMoves(place.slot, oldWidth, oldHeight, newWidth, newHeight);
    }
    if (pStage)
        pStage->Redraw();
    ShowViewer(true);
    gCurFrame = place.frame;
    if (jump)
        gCurFrame += GetIniItem("PicJump", 0);
    GotoCurrentFrame();
}
