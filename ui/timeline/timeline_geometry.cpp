#include "ui/timeline/timeline_geometry.h"

#include <algorithm>
#include <cstdlib>

#include "doc/camera.h"
#include "doc/cdoc.h"

int TimelineScale(long length, long fps)
{
    long scale = length < 3 * fps ? 5 : length < 8 * fps ? 10 : fps;
    return static_cast<int>(std::clamp(scale, 1L, 100000L));
}

int TimelineExtent(long length, int scale)
{
    // Lengths past a million frames are past the cap at every scale anyway.
    long frames = std::clamp(length, 0L, 1000000000L);
    long pixels = frames * 60 / std::max(scale, 1) + kTimelineAxisStart;
    return static_cast<int>(std::min(pixels, static_cast<long>(kLargestTimelineExtent)));
}

long TimelineToPix(long frame, int scale)
{
    return frame * 60 / std::max(scale, 1) + kTimelineAxisStart;
}

long TimelineFromPix(long x, int scale)
{
    return std::max((x - kTimelineAxisStart) * std::max(scale, 1) / 60, 0L);
}

int KeyPickTolerance(int scale) { return scale < 8 ? scale / 2 : 4; }

int KeyDropTolerance(int scale) { return scale <= 9 ? scale / 2 : 5; }

TimelineKeyHit FindTimelineKey(const CDoc& doc, int scale, long x, long y)
{
    TimelineKeyHit hit;
    if (y < kKeyRowTop || y > kKeyRowBottom || doc.picCount < 1)
        return hit;
    long frame = TimelineFromPix(x, scale);
    hit.pic = doc.FindCurPic(frame);
    long relative = frame - doc.GetPicStart(hit.pic);
    int tolerance = KeyPickTolerance(scale);
    int count = doc.GetKeyCount(hit.pic);
    for (int k = 0; k < count; ++k) {
        KeyStruct key;
        doc.GetKey(k, key, hit.pic);
        if (std::labs(key.Frame - relative) < tolerance) {
            hit.key = k;
            break;
        }
    }
    return hit;
}

long TransitionHandleX(const CDoc& doc, int scale, int pic)
{
    KeyStruct key;
    doc.GetKey(0, key, pic);
    long step = std::max(scale, 1);
    return doc.GetPicStart(pic) * 60 / step + static_cast<long>(key.TransLen) * 60 / step +
           kTimelineAxisStart;
}

int FindTimelineTransition(const CDoc& doc, int scale, long x, long y)
{
    if (y > kTransitionRowBottom || doc.picCount < 2)
        return -1;
    int pic = doc.FindCurPic(TimelineFromPix(x, scale));
    if (pic < 1)
        return -1;
    return std::labs(x - TransitionHandleX(doc, scale, pic)) < 12 ? pic : -1;
}

bool SegmentHolds(const KeyStruct& from, const KeyStruct& to)
{
    return from.XPos == to.XPos && from.YPos == to.YPos && from.Width == to.Width &&
           from.Rotation == to.Rotation && from.Rot2 == to.Rot2 && from.Rot3 == to.Rot3;
}

const char* EaseMark(float ease)
{
    if (!(ease > 0.0f))
        return nullptr;
    switch (DecodeKeyEase(ease).kind) {
    case kEaseBoth:
        return "<>";
    case kEaseIn:
        return "<";
    case kEaseOut:
        return ">";
    case kEaseNone:
        return "=";
    default:
        return nullptr;
    }
}
