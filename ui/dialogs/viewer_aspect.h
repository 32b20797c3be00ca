#pragma once
// "Set Viewer Aspect ratio": the shape of the output frame (and so of the viewer and of the
// camera frame on the stage) as square, video 4:3, video 16:9, the picture's own or a typed
// height-to-width ratio, as rows for the described dialog.

#include "platform/dialog/dialog_rows.h"

class CDoc;

// The command that opens the dialog.
constexpr int kViewerAspectCommand = 1008;

enum ViewerAspectRow {
    kAspectRowSquare,
    kAspectRowVideo43,
    kAspectRowVideo169,
    kAspectRowImage,
    kAspectRowSpecify,
    kAspectRowTyped,  // "Specify aspect ratio here"
    kViewerAspectRows
};

struct ViewerAspectLists {
    char descriptions[kViewerAspectRows * kDialogRowSize] = {};
    char values[kViewerAspectRows * kDialogRowSize] = {};
};

// The rows for the current ratio (height / width) and the current picture's: the first button
// whose ratio equals it exactly (square 1.0, then 0.75, 0.5625, the picture's) is on, else
// "Specify"; the typed row holds the ratio with "%0.4f".
ViewerAspectLists MakeViewerAspectDialog(float ratio, float pictureRatio);
// The ratio chosen; 0 when it is no ratio (a typed value of 0 or less, or not a number).
float ReadViewerAspectDialog(const ViewerAspectLists& lists, float pictureRatio);

// The document takes `ratio` unless it is 0 or less or the ratio it has: "AspectMode" becomes
// trunc(ratio x 10000 + 0.5) in the document and the settings. An unchanged ratio keeps the
// aspect mode (letterboxed 16:9 stays letterboxed). True when the ratio changed.
bool SetShowAspect(CDoc& doc, float ratio);

// The document's current picture's height / width; 0 without one.
float PictureRatioOf(const CDoc& doc);
