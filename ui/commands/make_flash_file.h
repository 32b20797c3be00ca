#pragma once
// "Make Flash File Options": the background colour, rate and quality of a Flash export, as rows
// for the described dialog, kept in the "FlashRed", "FlashGreen", "FlashBlue", "FlashFPS" and
// "FlashQuality" settings. The command itself is CMain::MakeFlashFile.

#include "platform/dialog/dialog_rows.h"

// The command that runs the export (it has no menu item).
constexpr int kMakeFlashFileCommand = 1018;

enum FlashOptionsRow { kFlashRowColour, kFlashRowRate, kFlashRowQuality, kFlashOptionsRows };

struct FlashOptionsLists {
    char descriptions[kFlashOptionsRows * kDialogRowSize] = {};
    char values[kFlashOptionsRows * kDialogRowSize] = {};
};

// The rows from the settings: the colour red + green x 256 + blue x 65536 ("%ld", each setting
// taken as its low byte), the rate (default "30") and the quality (default "75") as stored.
FlashOptionsLists MakeFlashOptionsDialog();

// The export the rows ask for; numbers that are not numbers read as 0.
struct FlashChoice {
    long colour = 0;  // 0x00BBGGRR
    int framesPerSecond = 0;
    int quality = 0;
};
FlashChoice ReadFlashOptionsDialog(const FlashOptionsLists& lists);
// Stores the rows: the colour split into its low byte ("FlashRed"), second ("FlashGreen") and
// third ("FlashBlue"), each "%ld"; the rate and quality texts as they are.
void StoreFlashOptions(const FlashOptionsLists& lists);
