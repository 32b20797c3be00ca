#pragma once
// The key information panel in the bottom-left corner of the main window: the stage zoom, the
// numbers of the key being edited and a one-line summary of the render settings and the current
// picture, with a plus and a minus mark that step to the next and the previous key.
//
// Coordinates: the main window's content (pixels from its top-left corner). L is the content's
// left edge, B its bottom edge and T = B - 85.

#include <string>

#include "doc/key.h"
#include "platform/base/types.h"

class CDoc;

constexpr int kPanelTile = 128;  // the panel is cleared with one 128 x 128 background tile
constexpr int kPanelTopFromBottom = 85;
constexpr int kZoomMarkCount = 4;

// Whether zoom mark `mark` (0 "100%", 1 "50%", 2 "25%", 3 "10%") is lit at stage scale `scale`:
// compared on trunc(scale x 100), the marks are on for 100 and more, 50, 25, and 10 and less.
bool ZoomMarkLit(float scale, int mark);
// The rectangle of a zoom mark's radio button.
tagRECT ZoomMarkRect(const tagRECT& client, int mark);

// The three key lines, values truncated toward zero: "Pos   x,y", "Wid  w", "Rot   r,r2,r3".
std::string KeyPositionLine(const KeyStruct& key);
std::string KeyWidthLine(const KeyStruct& key);
std::string KeyRotationLine(const KeyStruct& key);

// What the summary line reports.
struct PanelSummary {
    long frameRate = 2997;  // hundredths of a frame per second
    bool draft = false;
    bool fieldSwap = false;
    bool motionBlur = false;
    bool preBlur = false;
    int contrast = 50;    // 0..255, 50 neutral
    int brightness = 50;  // 0..255, 50 neutral
    bool videoSafe = false;
    int pictureBits = 24;     // bits per pixel of the current picture
    std::string pictureName;  // the current picture's file name, folder and extension left out
    bool slatewhirl = false;
};
// The summary of the document's state (settings as the document holds them, "FrameRate" from
// the settings, the picture on screen at the current frame).
PanelSummary SummaryOf(const CDoc& doc);
// "29.97 fps / Draft Mode / ... / name".
std::string SummaryLine(const PanelSummary& summary);

// The plus and minus marks: which one (x, y) hits, if any.
enum class PanelStep { kNone, kPrevious, kNext };
PanelStep PanelStepAt(const tagRECT& client, int x, int y);

// The frame of the key before (kPrevious) or after (kNext) `frame` on the picture on screen at
// `frame`, or -1 when there is none.
long NeighbourKeyFrame(const CDoc& doc, long frame, PanelStep step);

// Draws the panel on the current drawing port. scale: the stage's (1.0 without a stage).
void DrawKeyPanel(const tagRECT& client, const KeyStruct& key, float scale,
                  const PanelSummary& summary, bool standalone);
