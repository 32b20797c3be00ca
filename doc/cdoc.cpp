#include "doc/cdoc.h"

#include <cmath>
#include <cstring>

#include "doc/frame_math.h"
#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"

CDoc* pDoc = nullptr;

void KeyIdentity(KeyStruct& key) { std::memset(&key, 0, sizeof key); }

CDoc::CDoc() : image(16, 16, 8), lookAheadImage(16, 16, 8)
{
    ClearShow();
    ReadSettings();
    showLength = 1800;
}

CDoc::~CDoc() = default;

float CDoc::AspectRatioOf(int mode) { return static_cast<float>(mode / 5 * 5) / 10000.0f; }

void CDoc::ReadSettings()
{
    defaultEase = static_cast<int>(GetIniItem("EaseType", 0));
    alwaysUseRotation = GetIniItem("AlwaysUseRotation", 0) != 0;
    aspectMode = static_cast<int>(GetIniItem("AspectMode", 7500));
    aspectRatio = AspectRatioOf(aspectMode);
    fieldSwap = GetIniItem("FieldSwap", 0) != 0;
    gMultiProcess = GetIniItem("MultiProcess", 0) != 0;
    draftRender = GetIniItem("DraftRender", 0) != 0;
    rescaleShow = GetIniItem("RescaleShow", 0) != 0;
    flopTopField = GetIniItem("FlopTopField", 0) != 0;
    gFrameRate = GetIniItem("FrameRate", 2997);
    blurFrames = GetIniItem("BlurFrames", 0);
    GetIniString("AltImageFolder", "", altImageFolder, kTextSetting - 1);
    preBlur = static_cast<int>(GetIniItem("PreBlur", 0));
    matteColor = GetIniItem("MatteColor", 0);
    videoColors = GetIniItem("VideoColors", 1) != 0;
    showPicError = GetIniItem("ShowPicError", 1) != 0;
    gMultiProcOffset = static_cast<int>(GetIniItem("MultiProcOffset", 0));
    autoAddKey = GetIniItem("AutoAddKey", 1) != 0;
    ignoreAlpha = GetIniItem("IgnoreAlpha", 1) != 0;
    GetIniString("RootVolume", "/", rootVolume, kTextSetting - 1);
    slatewhirl = std::strstr(gEnv.name, "Slatewhirl") != nullptr;
}

void CDoc::ClearShow()
{
    image.Create(8, 8, 24);
    previousImage.Create(1, 1, 24);  // nothing of the old show stays in memory
    for (int pic = 0; pic < kPictureSlots; ++pic) {
        keyCount[pic] = 1;
        for (KeyStruct& key : keys[pic])
            KeyIdentity(key);
        KeyStruct& first = keys[pic][0];
        first.XPos = 200.0f;
        first.YPos = 200.0f;
        first.Width = 100.0f;
        first.Rotation = 0.0f;
        first.Frame = 0;
        std::memset(&picSpec[pic], 0, sizeof(FSpec));
    }
    picCount = 0;
    showID = 0;
    showFile.Clear();
    dirty = false;
    undoHead = -1;
    undoCount = 0;
    redoCount = 0;
    hasExtraSpec = false;
    std::memset(&extraSpec, 0, sizeof extraSpec);
    border = 0;
    picLoadState = 1;
    pictureFailures = 0;
    pictureFileLoads = 0;
    std::memset(&failedPicture, 0, sizeof failedPicture);
    curPic = 0;
    previousPic = -1;
    lookAheadPic = -1;
}

long CDoc::GetPicStart(int pic) const
{
    if (!IsPicture(pic))
        return 0;
    return FrameOfFloat(keys[pic][0].PicStart);
}

void CDoc::SetPicStart(long frame, int pic)
{
    if (IsPicture(pic))
        keys[pic][0].PicStart = static_cast<float>(frame);
}

int CDoc::GetKeyCount(int pic) const { return IsPicture(pic) ? keyCount[pic] : 0; }

void CDoc::GetKey(int key, KeyStruct& out, int pic) const
{
    if (key < 0 || key >= kMaxKeys || !IsPicture(pic))
        return;
    out = keys[pic][key];
}

void CDoc::SetKey(int key, const KeyStruct& in, int pic)
{
    if (key < 0 || key > kMaxKeys || !IsPicture(pic))
        return;
    // Index 64 is the first key of the following slot: the table is one flat run of keys.
    KeyStruct& slot = key == kMaxKeys ? keys[pic + 1][0] : keys[pic][key];
    slot = in;
    if (key >= keyCount[pic] && keyCount[pic] < kMaxKeys)
        keyCount[pic] += 1;
    dirty = true;
}

int CDoc::FindCurPic(long frame) const
{
    if (picCount < 2)
        return 0;
    for (int pic = 0; pic < picCount - 1; ++pic)
        if (GetPicStart(pic) <= frame && GetPicStart(pic + 1) > frame)
            return pic;
    // Also for a frame before the first start: picture 0 always starts at frame 0.
    return picCount - 1;
}

int CDoc::FindKey(long frame) const
{
    int pic = FindCurPic(frame);
    long relative = frame - GetPicStart(pic);
    for (int key = 0; key < keyCount[pic]; ++key) {
        long keyFrame = keys[pic][key].Frame;
        if (keyFrame >= relative - 3 && keyFrame <= relative + 3)
            return key;
    }
    return -1;
}

void CDoc::SortKeys(int pic)
{
    if (!IsPicture(pic))
        return;
    int count = keyCount[pic];
    for (int i = 0; i < count; ++i) {
        int smallest = i;
        for (int j = i + 1; j < count; ++j)
            if (keys[pic][j].Frame < keys[pic][smallest].Frame)
                smallest = j;
        if (smallest != i) {
            KeyStruct moved = keys[pic][i];
            keys[pic][i] = keys[pic][smallest];
            keys[pic][smallest] = moved;
        }
    }
}

void CDoc::DeleteKey(int key, int pic)
{
    if (key < 0 || key >= kMaxKeys || !IsPicture(pic) || key >= keyCount[pic])
        return;
    keyCount[pic] -= 1;
    Do(keys[pic][key], kUndoDeletedKey, pic);
    for (int i = key; i < keyCount[pic]; ++i)
        keys[pic][i] = keys[pic][i + 1];
    dirty = true;
}

void CDoc::DefaultEase()
{
    for (int pic = 0; pic < picCount; ++pic)
        for (int key = 0; key < keyCount[pic]; ++key)
            keys[pic][key].Ease = 0.0f;
}

bool CDoc::HasRotationInShow(int pic) const
{
    if (alwaysUseRotation)
        return true;
    if (!IsPicture(pic))
        return false;
    for (int key = 0; key < keyCount[pic]; ++key) {
        const KeyStruct& k = keys[pic][key];
        // A NaN compares unequal to 0 as well: an unreadable angle still needs the rotating path.
        if (k.Rotation != 0.0f || k.Rot2 != 0.0f || k.Rot3 != 0.0f)
            return true;
    }
    return false;
}
