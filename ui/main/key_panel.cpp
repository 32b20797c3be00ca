#include "ui/main/key_panel.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/draw/bitmap_draw.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_text.h"
#include "platform/ini/settings.h"
#include "platform/util/text.h"
#include "platform/wnd/shell.h"
#include "ui/main/editor_pictures.h"

namespace {

constexpr long kInk = 0x000000;
constexpr long kMarkGrey = 0x808080;
constexpr long kWhite = 0xFFFFFF;
const char* const kZoomLabels[kZoomMarkCount] = {"100%", "50%", "25%", "10%"};

int Top(const tagRECT& client) { return client.bottom - kPanelTopFromBottom; }

// A neutral contrast or brightness: one either side of 50 counts as none.
bool IsNeutral(int value) { return value >= 49 && value <= 51; }

std::string Format(const char* format, int a, int b = 0, int c = 0)
{
    char text[64];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

// Truncation toward zero, as a C cast does; values out of int's range are held at its ends.
int Truncate(float value)
{
    if (std::isnan(value))
        return 0;
    if (value >= 2147483647.0f)
        return 2147483647;
    if (value <= -2147483648.0f)
        return -2147483647 - 1;
    return static_cast<int>(value);
}

}  // namespace

bool ZoomMarkLit(float scale, int mark)
{
    float hundredths = std::trunc(scale * 100.0f);
    switch (mark) {
    case 0:
        return hundredths >= 100.0f;
    case 1:
        return hundredths == 50.0f;
    case 2:
        return hundredths == 25.0f;
    case 3:
        return hundredths <= 10.0f;
    default:
        return false;
    }
}

tagRECT ZoomMarkRect(const tagRECT& client, int mark)
{
    int top = client.bottom - 82 + 10 * mark;
    return {client.left + 10, top, client.left + 19, top + 9};
}

std::string KeyPositionLine(const KeyStruct& key)
{
    return Format("Pos   %d,%d", Truncate(key.XPos), Truncate(key.YPos));
}

std::string KeyWidthLine(const KeyStruct& key) { return Format("Wid  %d", Truncate(key.Width)); }

std::string KeyRotationLine(const KeyStruct& key)
{
    return Format("Rot   %d,%d,%d", Truncate(key.Rotation), Truncate(key.Rot2), Truncate(key.Rot3));
}

PanelSummary SummaryOf(const CDoc& doc)
{
    PanelSummary summary;
    summary.frameRate = GetIniItem("FrameRate", 2997);
    summary.draft = doc.draftRender;
    summary.fieldSwap = doc.fieldSwap;
    summary.motionBlur = doc.blurFrames != 0;
    summary.preBlur = doc.preBlur != 0;
    summary.contrast = doc.showWord & 0xFF;
    summary.brightness = doc.showWord >> 8;
    summary.videoSafe = doc.videoColors;
    summary.pictureBits = doc.image.GetBitCount();
    summary.slatewhirl = doc.slatewhirl;
    int pic = doc.FindCurPic(gCurFrame);
    if (pic >= 0 && pic < kPictureSlots && doc.picSpec[pic].name[0] != 0) {
        char name[kFSpecNameSize];
        std::memcpy(name, doc.picSpec[pic].name, sizeof name);
        name[sizeof name - 1] = 0;
        StripFilePath(name);
        StripFileExt(name);
        summary.pictureName = name;
    }
    return summary;
}

std::string SummaryLine(const PanelSummary& summary)
{
    std::string line;
    if (!summary.slatewhirl) {
        char rate[32];
        std::snprintf(rate, sizeof rate, "%.2f fps",
                      static_cast<double>(summary.frameRate) / 100.0);
        line = rate;
    }
    if (summary.draft)
        line += " / Draft Mode";
    if (summary.fieldSwap)
        line += " / Field order swapped";
    if (summary.motionBlur)
        line += " / Motion Blur";
    if (summary.preBlur)
        line += " / Pre-Blur";
    if (!IsNeutral(summary.contrast) || !IsNeutral(summary.brightness))
        line += " / Con";
    if (summary.videoSafe)
        line += " / VS";
    if (summary.pictureBits > 24)
        line += " / Alpha";
    if (!summary.pictureName.empty()) {
        if (!summary.slatewhirl)
            line += " / ";
        line += summary.pictureName;
    }
    return line;
}

PanelStep PanelStepAt(const tagRECT& client, int x, int y)
{
    int left = client.left;
    int top = Top(client);
    // Each mark's triangle is 5 pixels deep and 10 high about T + 65; one pixel more all round
    // makes it easier to hit.
    if (y < top + 59 || y > top + 71)
        return PanelStep::kNone;
    if (x >= left + 102 && x <= left + 109)
        return PanelStep::kNext;
    if (x >= left + 93 && x <= left + 100)
        return PanelStep::kPrevious;
    return PanelStep::kNone;
}

long NeighbourKeyFrame(const CDoc& doc, long frame, PanelStep step)
{
    if (step == PanelStep::kNone)
        return -1;
    int pic = doc.FindCurPic(frame);
    long start = doc.GetPicStart(pic);
    long best = -1;
    for (int i = 0; i < doc.GetKeyCount(pic); ++i) {
        KeyStruct key;
        doc.GetKey(i, key, pic);
        long at = start + key.Frame;
        if (step == PanelStep::kNext && at > frame && (best < 0 || at < best))
            best = at;
        if (step == PanelStep::kPrevious && at < frame && at >= 0 && (best < 0 || at > best))
            best = at;
    }
    return best;
}

void DrawKeyPanel(const tagRECT& client, const KeyStruct& key, float scale,
                  const PanelSummary& summary, bool standalone)
{
    if (client.right <= client.left || client.bottom <= client.top)
        return;
    int left = client.left;
    int top = Top(client);
    DrawBitmap({left, client.bottom - kPanelTile, left + kPanelTile, client.bottom},
               kBackgroundTile);

    FontRecord* previous = pCurFont;
    SelectFont(Sans10, -1, 0);
    for (int mark = 0; mark < kZoomMarkCount; ++mark) {
        tagRECT box = ZoomMarkRect(client, mark);
        DrawRadio(kInk, box, ZoomMarkLit(scale, mark));
        DrawText(kInk, kZoomLabels[mark], box.left + 13, box.top - 1, kTextLeft);
    }
    DrawText(kInk, KeyPositionLine(key).c_str(), left + 10, top + 46, kTextLeft);
    DrawText(kInk, KeyWidthLine(key).c_str(), left + 10, top + 56, kTextLeft);
    DrawText(kInk, KeyRotationLine(key).c_str(), left + 10, top + 66, kTextLeft);
    DrawText(kInk, SummaryLine(summary).c_str(), (client.right - client.left) / 2, top + 72,
             kTextCentre);

    if (standalone) {
        DrawTriangle(kMarkGrey, left + 108, top + 65, 5, kTriangleRight);
        DrawLine(kWhite, left + 104, top + 65, left + 108, top + 65, 2);
        DrawLine(kWhite, left + 106, top + 63, left + 106, top + 67, 2);
        DrawTriangle(kMarkGrey, left + 94, top + 65, 5, kTriangleLeft);
        DrawLine(kWhite, left + 93, top + 65, left + 97, top + 65, 2);
    }
    if (previous)
        SelectFont(previous, -1, 0);
}
