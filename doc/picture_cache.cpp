// The pictures behind the frames: loading a picture into the show (LoadPicture), keeping the
// current and the next picture in memory (LoadPictureBuffer, lbThreadFunc) and moving the current
// frame (GotoFrame).

#include "doc/picture_cache.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

#include "doc/cdoc.h"
#include "doc/editor_link.h"
#include "doc/globals.h"
#include "platform/dialog/message_box.h"
#include "platform/file/paths.h"

namespace {

// The contrast settings that leave a picture alone: the characters '1' to '3'.
bool IsNeutralContrast(int value) { return value >= 49 && value <= 51; }

}  // namespace

int BorderPixels(int border, int width)
{
    if (border <= 0)
        return 0;
    return static_cast<int>(border / 200.0 * width);
}

int PictureDepth(int pictureBits, int documentDepth)
{
    int own = std::max(pictureBits, 24);
    return own <= documentDepth ? own : documentDepth;
}

namespace {

// Pre-blur, tint, contrast and video-safe colours, in place, on the picture inside its border.
void AdjustPrepared(CDIB& target, const PicturePreparation& preparation)
{
    if (preparation.preBlur > 0)
        target.Blur(preparation.preBlur);
    if (preparation.border < 0)
        target.Tint(preparation.matteColor);
    int low = preparation.showWord & 0xFF;
    int high = preparation.showWord >> 8;
    if (!IsNeutralContrast(low) || !IsNeutralContrast(high))
        target.Contrast(low, high);
    if (preparation.videoColors)
        target.VideoColors();
}

}  // namespace

bool PreparePicture(CDIB& target, const CDIB& picture, const PicturePreparation& preparation)
{
    int b = BorderPixels(preparation.border, picture.GetWid());
    int depth = PictureDepth(picture.GetBitCount(), preparation.depth);
    if (!target.Create(picture.GetWid() + 2L * b, picture.GetHgt() + 2L * b, depth))
        return false;
    if (!picture.CopyScale(&target, preparation.matteColor, b))
        return false;
    AdjustPrepared(target, preparation);
    return true;
}

bool PrepareLoadedPicture(CDIB& target, CDIB& loaded, const PicturePreparation& preparation)
{
    int depth = PictureDepth(loaded.GetBitCount(), preparation.depth);
    if (BorderPixels(preparation.border, loaded.GetWid()) != 0 || loaded.GetBitsAdd(0) == nullptr)
        return PreparePicture(target, loaded, preparation);
    // Pictures are decoded at 32 bits; a show held at 24 drops their alpha where they lie.
    if (depth == 24 && loaded.GetBitCount() == 32)
        loaded.DropAlpha();
    if (depth != loaded.GetBitCount())
        return PreparePicture(target, loaded, preparation);
    // Without a border the decoded pixels are the prepared ones: they move into the target
    // instead of being copied, and a large picture is in memory once, not twice.
    bool rotating = target.useRotFilter;
    target.Swap(loaded);
    target.useRotFilter = rotating;
    // As Create would have made them.
    target.nominalWidth = static_cast<int16_t>(target.GetWid());
    target.nominalHeight = static_cast<int16_t>(target.GetHgt());
    AdjustPrepared(target, preparation);
    return true;
}

int lbThreadFunc(void* block)
{
    auto* request = static_cast<PictureLoadRequest*>(block);
    if (request->busy != nullptr)
        *request->busy = true;
    CDIB loaded(1, 1, 24);
    const FSpec* alternative =
        request->alternativeFolder.name[0] != '\0' ? &request->alternativeFolder : nullptr;
    int result = loaded.Load(&request->spec, const_cast<FSpec*>(alternative), request->showErrors);
    if (result != 0 && !PrepareLoadedPicture(*request->target, loaded, request->preparation))
        result = 0;
    if (request->result != nullptr)
        *request->result = result;
    if (request->busy != nullptr)
        *request->busy = false;
    delete request;
    return result;
}

PicturePreparation CDoc::Preparation() const
{
    PicturePreparation preparation;
    preparation.matteColor = matteColor;
    preparation.border = border;
    preparation.depth = ignoreAlpha ? 24 : 32;
    preparation.preBlur = preBlur;
    preparation.showWord = showWord;
    preparation.videoColors = videoColors;
    return preparation;
}

FSpec CDoc::AlternativeFolder() const
{
    if (altImageFolder[0] == '\0')
        return FSpec{};
    return PathFSpec(altImageFolder);
}

bool CDoc::LoadInto(CDIB& target, int pic, int* result)
{
    auto* request = new PictureLoadRequest;
    request->target = &target;
    request->spec = picSpec[pic];
    request->busy = &loadBusy;
    request->result = result;
    request->preparation = Preparation();
    request->alternativeFolder = AlternativeFolder();
    request->showErrors = showPicError;
    ++pictureFileLoads;
    lbThreadFunc(request);
    return *result != 0;
}

bool CDoc::LoadPictureBuffer(int pic, bool noLookAhead)
{
    if (pic < 0 || pic >= kMaxPictures)
        return false;
    if (pic != curPic) {
        // A slot past the show has no file to read (the empty show's picture 0 is the cleared
        // image, current from the start).
        if (pic >= picCount)
            return false;
        // The current picture stays prepared as the previous one: dissolves and motion blur
        // alternate between two pictures.
        image.Swap(previousImage);
        std::swap(curPic, previousPic);
        std::swap(picLoadState, previousLoadState);
        if (pic == curPic) {
            // The previous picture, back as it was.
        } else if (pic == lookAheadPic) {
            curPic = -1;
            if (!lookAheadImage.Copy(&image, true))
                return false;
            image.nominalWidth = lookAheadImage.nominalWidth;
            image.nominalHeight = lookAheadImage.nominalHeight;
            picLoadState = lookAheadLoadState;
        } else {
            curPic = -1;
            int result = 0;
            LoadInto(image, pic, &result);
            picLoadState = result;
            if (result != 1)
                NoteFailedPicture(picSpec[pic]);
        }
        // A picture that could not be read stays current too, so its file is tried once per
        // visit rather than once per frame.
        curPic = pic;
        if (!noLookAhead && pic < picCount - 1) {
            while (loadBusy)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            lookAheadPic = -1;
            if (LoadInto(lookAheadImage, pic + 1, &lookAheadLoadState))
                lookAheadPic = pic + 1;
        }
    }
    // From the keys as they are now: a rotation added to the current picture counts at once.
    image.useRotFilter = HasRotationInShow(pic);
    return picLoadState != 0;
}

void CDoc::LoadPicture(FSpec* file, int pic, long start)
{
    if (file == nullptr || pic < 0 || strnlen(file->name, kFSpecNameSize) <= 2)
        return;
    if (editor != nullptr)
        editor->ShowBusy(true);
    CDIB loaded(1, 1, 24);
    FSpec alternative = AlternativeFolder();
    ++pictureFileLoads;
    int result =
        loaded.Load(file, alternative.name[0] != '\0' ? &alternative : nullptr, showPicError);
    // Whatever the outcome, the image no longer stands for the picture it held.
    ForgetLoadedPictures();
    picLoadState = result;
    if (result != 1)
        NoteFailedPicture(*file);
    if (result == 0) {
        if (editor != nullptr)
            editor->ShowBusy(false);
        return;
    }
    int slot = std::min(pic, kMaxPictures - 1);
    picCount = std::max(picCount, slot + 1);
    picSpec[slot] = *file;
    picSpec[slot].name[kFSpecNameSize - 1] = '\0';
    SetPicStart(slot == 0 ? 0 : start, slot);
    if (!PrepareLoadedPicture(image, loaded, Preparation())) {
        ErrorBox("Not Enough Memory to load Image", -9999);
        if (editor != nullptr)
            editor->ShowBusy(false);
        return;
    }
    curPic = slot;
    image.useRotFilter = HasRotationInShow(slot);

    if (keyCount[slot] < 2) {
        // A new picture starts with the camera on the whole of it.
        KeyStruct& first = keys[slot][0];
        float width = static_cast<float>(image.GetWid());
        float height = static_cast<float>(image.GetHgt());
        first.Width = width;
        if (slatewhirl && height > width * aspectRatio)
            first.Width = height / aspectRatio;
        first.XPos = width / 2;
        first.YPos = height / 2;
        first.Rotation = 0.0f;
        first.Rot2 = 0.0f;
        first.Rot3 = 0.0f;
    }
    dirty = true;
    if (editor != nullptr)
        editor->ShowBusy(false);
}

void CDoc::NoteFailedPicture(const FSpec& spec)
{
    ++pictureFailures;
    failedPicture = spec;
}

void CDoc::ForgetLookAhead()
{
    while (loadBusy)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    lookAheadPic = -1;
}

void CDoc::ForgetLoadedPictures()
{
    ForgetLookAhead();
    curPic = -1;
    previousPic = -1;
}

bool CDoc::GotoFrame(long frame, bool refresh)
{
    gCurFrame = std::clamp(frame, 0L, showLength);
    int pic = FindCurPic(gCurFrame);
    if (!LoadPictureBuffer(pic, false))
        return false;
    QueueKey(&currentCamera, pic, gCurFrame, 0);
    if (editor != nullptr) {
        editor->SetCurrentKey(currentCamera);
        if (refresh)
            editor->RefreshFrame(gCurFrame);
    }
    return true;
}
