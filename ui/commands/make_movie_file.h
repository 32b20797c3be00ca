#pragma once
// "Make Movie File" and "Batch Render Movies": the movie options dialog, the choice of show
// files (batch), the output movie's name, then the render job of output/render_driver.h with a
// progress panel on the stage.
//
// Every question goes through a dialog with a seam for tests: the options dialog is a described
// dialog (it reads posted input), the files come from the file dialogs, the codec from the codec
// dialog and the messages from the message boxes.

#include <string>

#include "output/render_driver.h"
#include "platform/dialog/dialog_rows.h"

class CDoc;

// The rows of "Make Movie Options", in order.
enum MovieDialogRow {
    kMovieRowWidth,
    kMovieRowHeight,
    kMovieRowStart,
    kMovieRowEnd,
    kMovieRowHolds,
    kMovieRowRate,
    kMovieRowQuality,
    kMovieRowFields,
    kMovieRowReverse,
    kMovieDialogRows
};

struct MovieDialogLists {
    char descriptions[kMovieDialogRows * kDialogRowSize] = {};
    char values[kMovieDialogRows * kDialogRowSize] = {};
};

// Where the dialog opens, in the stage's window pixels.
constexpr int kMovieDialogX = 20;
constexpr int kMovieDialogY = 20;
constexpr const char kMovieDialogTitle[] = "Make Movie Options";

// The most show files one batch takes.
constexpr int kMaxBatchShows = 64;
constexpr const char kShowFileFilter[] = "Parallaxotron Files (*.plx)|*.plx|All Files (*.*)|*.*|";

// The rows filled from the settings as text ("MovieWid", "MovieHgt", "MovieStart", "MovieHold",
// "MovieFPS", "MovieQuality", "MovieFields", "MovieReverse", with their defaults); the end row
// is the end of the show.
MovieDialogLists MakeMovieDialog(const CDoc& doc);
// The rows as numbers: sizes clamped to 0..4096, timecodes read as frames, the rate limited to
// 0..60, fields on when checked.
MovieOptions ReadMovieDialog(const MovieDialogLists& lists);

// The movie file kinds offered when naming the output, with the kind remembered in "MovieType"
// (0 AVI, 1 QuickTime, 2 DPS, 3 VideoToaster) first and the others after it in their usual
// order, then "All Files".
std::string MovieFileFilter(int movieType);
// The extension of a movie kind, ".avi" for an unknown one.
const char* MovieTypeExtension(int movieType);

// The command: asks, renders and reports. Answers 1 when movies were made, 0 when the user
// stopped at a dialog or the job failed (it has said why).
int MakeMovieFile(bool batch);
