#include "ui/timeline/timeline_edit.h"

#include <algorithm>
#include <cstring>

#include "doc/cdoc.h"
#include "ui/timeline/timeline_geometry.h"

TimelinePress ClassifyPress(const CDoc& doc, int scale, long x, long y)
{
    TimelinePress press;
    TimelineKeyHit hit = FindTimelineKey(doc, scale, x, y);
    if (hit.key == 0) {
        // A picture's first key is its start: only a later picture's start can move.
        if (doc.picCount >= 2 && hit.pic >= 1) {
            press.drag = TimelineDrag::kPicture;
            press.pic = hit.pic;
        }
        return press;
    }
    if (hit.key > 0) {
        press.drag = TimelineDrag::kKey;
        press.pic = hit.pic;
        press.key = hit.key;
        return press;
    }
    int transition = FindTimelineTransition(doc, scale, x, y);
    if (transition >= 0) {
        press.drag = TimelineDrag::kTransition;
        press.pic = transition;
        return press;
    }
    press.drag = TimelineDrag::kScrub;
    return press;
}

namespace {

// Where the dragged key went when its picture's keys were sorted (it is the one stored record
// equal to it), or -1.
int SortedIndexOf(const CDoc& doc, int pic, const KeyStruct& key)
{
    for (int k = 1; k < doc.GetKeyCount(pic); ++k)
        if (std::memcmp(&doc.keys[pic][k], &key, sizeof key) == 0)
            return k;
    return -1;
}

}  // namespace

void DropKey(CDoc& doc, int scale, int pic, int key, long f0, long f1, bool shift)
{
    if (f0 == f1 || pic < 0 || pic >= doc.picCount || key < 1 || key >= doc.GetKeyCount(pic))
        return;
    if (shift)
        doc.ShiftKeys(f0, f1 - f0);
    if (doc.FindCurPic(f0) != pic || doc.FindCurPic(f1) != pic)
        return;
    KeyStruct moved;
    doc.GetKey(key, moved, pic);
    doc.Do(moved, key, pic);
    moved.Frame = static_cast<int32_t>(f1 - doc.GetPicStart(pic));
    doc.SetKey(key, moved, pic);
    doc.SortKeys(pic);
    if (moved.Frame < KeyDropTolerance(scale)) {
        // Dropped onto its picture's start: the key goes.
        int sorted = SortedIndexOf(doc, pic, moved);
        if (sorted >= 1)
            doc.DeleteKey(sorted, pic);
    }
}

long TransitionLengthAt(const CDoc& doc, int scale, int pic, long x)
{
    long start = doc.GetPicStart(pic);
    long length = std::max(0L, TimelineFromPix(x - TimelineToPix(start, scale) + 4, scale));
    if (pic + 1 < doc.picCount)
        length = std::min(length, doc.GetPicStart(pic + 1) - start - 1);
    return std::max(length, 0L);
}

void DropTransition(CDoc& doc, int scale, int pic, long x)
{
    if (pic < 0 || pic >= doc.picCount)
        return;
    KeyStruct first;
    doc.GetKey(0, first, pic);
    doc.Do(first, 0, pic);
    first.TransLen = static_cast<float>(TransitionLengthAt(doc, scale, pic, x));
    doc.SetKey(0, first, pic);
    doc.dirty = true;
}

void DropPictureStart(CDoc& doc, int pic, long f0, long f1)
{
    if (f0 != f1)
        doc.ChangePicTiming(f1, pic);
}
