#pragma once
// "Prep Pictures": how every picture of the show is made ready for video when it is loaded
// (video-safe colours, pre-blur, a border or a tint of the matte colour, contrast and
// brightness, alpha), as rows for the described dialog. On OK the document takes the values and
// every picture is loaded again with them; the keys stay as they were.

#include <cstdint>

#include "platform/dialog/dialog_rows.h"

class CDoc;

// The command that opens the dialog.
constexpr int kPrepPicturesCommand = 1025;

// The dialog's rows, in order.
enum PrepPicturesRow {
    kPrepRowVideoSafe,
    kPrepRowPreBlur,
    kPrepRowBorder,
    kPrepRowColour,
    kPrepRowContrast,
    kPrepRowBrightness,
    kPrepRowBorderMode,  // the two colour-mode buttons
    kPrepRowTint,
    kPrepRowIgnoreAlpha,
    kPrepPicturesRows
};

// The document's preparation values the dialog edits.
struct PrepValues {
    bool videoColors = true;
    int preBlur = 0;
    int border = 0;  // -1: tint with the matte colour instead of a border
    long matteColor = 0;
    uint16_t showWord = 12850;  // contrast in the low byte, brightness in the next
    bool ignoreAlpha = true;
};

PrepValues PrepValuesOf(const CDoc& doc);
void SetPrepValues(CDoc& doc, const PrepValues& values);

struct PrepPicturesLists {
    char descriptions[kPrepPicturesRows * kDialogRowSize] = {};
    char values[kPrepPicturesRows * kDialogRowSize] = {};
};

// The rows showing `values`: the border-mode button on for a border of 0 or more, the tint
// button for a negative one.
PrepPicturesLists MakePrepPicturesDialog(const PrepValues& values);
// The values the rows hold. In border mode a minus sign in the border text becomes "0" (a
// negative entry turns positive); in tint mode the border is -1 whatever was typed. Contrast and
// brightness pack as (contrast AND 255) OR (brightness x 256), cut to 16 bits.
PrepValues ReadPrepPicturesDialog(const PrepPicturesLists& lists);

// Loads every picture of the show again from its file at its start frame, so the document's
// preparation as it is now is applied afresh; the images kept in memory are dropped first and
// every key is kept as it was.
void ReloadPictures(CDoc& doc);
