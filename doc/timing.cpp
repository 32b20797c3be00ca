// Show timing edits: shifting keys, moving, swapping, copying and deleting pictures, trimming
// and rescaling the show, and re-timing keys for uniform camera speed.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "doc/camera.h"
#include "doc/cdoc.h"
#include "doc/frame_math.h"

// "Uniform Speed" samples every frame of a picture; beyond a day of frames at 60 per second the
// keys come from a damaged show, and sampling them would only stall the program.
static constexpr long kMaxUniformSpeedFrames = 24L * 3600 * 60;

static bool IsSlot(int pic) { return pic >= 0 && pic < kPictureSlots; }

bool CDoc::ShiftKeys(long frame, long delta)
{
    int pic = FindCurPic(frame);
    long relative = frame - GetPicStart(pic);
    for (int key = 0; key < keyCount[pic]; ++key) {
        KeyStruct& k = keys[pic][key];
        if (k.Frame > relative) {
            Do(k, key, pic);
            k.Frame = static_cast<int32_t>(std::clamp<long>(k.Frame + delta, 0, showLength));
        }
    }
    for (int later = pic + 1; later < picCount; ++later) {
        Do(keys[later][0], 0, later);
        SetPicStart(GetPicStart(later) + delta, later);
    }
    dirty = true;
    return true;
}

bool CDoc::ChangePicTiming(long frame, int pic)
{
    if (!IsPicture(pic))
        return false;
    int dropped = FindCurPic(frame);
    KeyStruct old = keys[pic][0];
    if (dropped == pic && pic == 0)
        return false;
    bool plainMove = dropped == pic || (dropped < pic && frame - GetPicStart(pic - 1) > 7);
    if (!plainMove) {
        old.Frame = dropped;
        Do(old, kUndoPictureSwap, pic);
        FlopPic(pic, dropped);
        dirty = true;
        return true;
    }
    Do(old, 0, pic);
    SetPicStart(frame, pic);
    dirty = true;
    return true;
}

void CDoc::CopyPic(int dst, int src)
{
    if (!IsSlot(dst) || !IsSlot(src) || dst == src)
        return;
    keyCount[dst] = keyCount[src];
    std::memcpy(keys[dst], keys[src], sizeof keys[src]);
    picSpec[dst] = picSpec[src];
    // The images in memory may show the picture that was in the slot.
    if (dst < picCount)
        ForgetLoadedPictures();
}

void CDoc::FlopPic(int a, int b)
{
    if (!IsPicture(a) || !IsPicture(b) || a == b)
        return;
    float startA = keys[a][0].PicStart;
    float startB = keys[b][0].PicStart;
    CopyPic(kMaxPictures, b);
    CopyPic(b, a);
    CopyPic(a, kMaxPictures);
    keys[a][0].PicStart = startA;
    keys[b][0].PicStart = startB;
    ForgetLoadedPictures();
    dirty = true;
}

void CDoc::DeletePic(int pic)
{
    if (!IsPicture(pic) || pic >= picCount)
        return;
    if (picCount == 1) {
        // The empty show of ClearShow: its cleared image is picture 0, nothing left to load.
        ClearShow();
        return;
    }
    picCount -= 1;
    for (int slot = pic; slot < picCount; ++slot) {
        float start = keys[slot][0].PicStart;
        CopyPic(slot, slot + 1);
        keys[slot][0].PicStart = start;
    }
    // The slot left over at the end goes back to the state of a new show.
    KeyStruct fresh;
    KeyIdentity(fresh);
    for (KeyStruct& key : keys[picCount])
        key = fresh;
    keys[picCount][0].XPos = 200.0f;
    keys[picCount][0].YPos = 200.0f;
    keys[picCount][0].Width = 100.0f;
    keyCount[picCount] = 1;
    std::memset(&picSpec[picCount], 0, sizeof(FSpec));
    ForgetLoadedPictures();
    dirty = true;
}

bool CDoc::ChopShow(long length)
{
    if (length < 0)
        return false;
    // The show is modified only when a picture or a key goes: a show loaded within its length
    // stays unmodified (DeletePic marks it itself).
    bool cut = false;
    // The index moves on after a deletion too: of two neighbours past the end only the first
    // goes in one pass.
    for (int pic = 0; pic < picCount; ++pic)
        if (GetPicStart(pic) > length)
            DeletePic(pic);
    for (int pic = 0; pic < picCount; ++pic) {
        long start = GetPicStart(pic);
        if (start > length)
            continue;
        KeyStruct camera;
        QueueKey(&camera, pic, length, 0);
        for (int key = 0; key < keyCount[pic]; ++key) {
            if (start + keys[pic][key].Frame > length) {
                camera.Frame = static_cast<int32_t>(length - start);
                keys[pic][key] = camera;
                keyCount[pic] = std::max(1, key + 1);
                cut = true;
                break;
            }
        }
    }
    keys[0][0].ShowLen = static_cast<float>(showLength);
    if (cut)
        dirty = true;
    return true;
}

bool CDoc::RescaleShow(long from, long to)
{
    if (from == 0 || to == 0 || std::labs(from - to) <= 1)
        return false;
    float factor = static_cast<float>(to) / static_cast<float>(from);
    for (int key = 1; key < keyCount[0]; ++key)
        keys[0][key].Frame = FrameOf(static_cast<double>(keys[0][key].Frame * factor));
    keys[0][0].ShowLen = static_cast<float>(showLength);
    dirty = true;
    return true;
}

void CDoc::RescaleMoves(int pic, int oldWidth, int oldHeight, int newWidth, int newHeight)
{
    if (!IsPicture(pic) || oldWidth == 0 || oldHeight == 0)
        return;
    float across = static_cast<float>(newWidth) / static_cast<float>(oldWidth);
    float down = static_cast<float>(newHeight) / static_cast<float>(oldHeight);
    for (int key = 0; key < keyCount[pic]; ++key) {
        KeyStruct& k = keys[pic][key];
        k.XPos *= across;
        k.Width *= across;
        k.YPos *= down;
        k.VertExtra *= down;
    }
    dirty = true;
}

// Length of the camera's path through the samples at frames first, first + 1, ..., last.
static double PathLength(const CDoc& doc, int pic, long first, long last)
{
    int n = doc.keyCount[pic];
    const KeyStruct* list = doc.keys[pic];
    double length = 0.0;
    double x = CurveFit(n, list, kFieldXPos, first, 0, doc.defaultEase);
    double y = CurveFit(n, list, kFieldYPos, first, 0, doc.defaultEase);
    for (long frame = first + 1; frame <= last; ++frame) {
        double nextX = CurveFit(n, list, kFieldXPos, frame, 0, doc.defaultEase);
        double nextY = CurveFit(n, list, kFieldYPos, frame, 0, doc.defaultEase);
        length += std::hypot(nextX - x, nextY - y);
        x = nextX;
        y = nextY;
    }
    return length;
}

void CDoc::ConstantMotion(int pic)
{
    if (!IsPicture(pic) || keyCount[pic] < 2)
        return;
    int n = keyCount[pic];
    long last = keys[pic][n - 1].Frame;
    if (last <= 0 || last > kMaxUniformSpeedFrames)
        return;
    double average = PathLength(*this, pic, 0, last - 1) / static_cast<double>(last);
    if (average == 0.0 || !std::isfinite(average))
        return;
    for (int key = 1; key < n; ++key) {
        long from = keys[pic][key - 1].Frame;
        long to = keys[pic][key].Frame;
        double segment = to - 1 > from && to - from <= kMaxUniformSpeedFrames
                             ? PathLength(*this, pic, from, to - 1)
                             : 0.0;
        Do(keys[pic][key], key, pic);
        int32_t frames = FrameOf(segment / average);
        if (frames < 1)
            frames = 5;
        keys[pic][key].Frame = FrameOf(static_cast<double>(from) + frames);
    }
    dirty = true;
}
