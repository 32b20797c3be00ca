#pragma once
// The open and save file dialogs, and the seam through which tests answer them.
//
// Filters are the callers' "Description|pattern|Description|pattern||" strings (patterns joined
// with ";"); the dialog offers them in that order. Every FSpec the dialogs hand back is in path
// form. The folder last used is remembered by the callers, not here.
//
// Main thread only.

#include <string>
#include <vector>

#include "platform/file/fspec.h"

class CPWnd;

// Lets the user choose a file to open. `initial` names the folder to start in (any FSpec form,
// may be null; a file's own folder is used). With `multiple` false, `result` receives the file.
// With `multiple` true the user may choose several and `result` is an array of `capacity`
// records, filled in order with the first `capacity` files chosen; nothing is written after the
// last (callers clear the array to find the end). False when cancelled or nothing was chosen,
// or when `multiple` comes with no room; `result` is then untouched. `defaultExt` only matters
// when saving and is accepted here for the callers' sake.
bool OpenFileDialog(CPWnd* owner, FSpec* file, const char* filter, const char* defaultExt,
                    const FSpec* folder, bool multiple, int capacity = 1);

// Lets the user choose where to save. Proposes the leaf of `spec->name` (after the last ":",
// "\" or "/"), or "Untitled" when that is empty, in the folder of `spec->name` when it has one,
// else in `initial`'s. `defaultExt` (".plx") is added to a name typed without one. On
// confirmation `spec` receives the full path without a trailing separator; the file itself is
// not touched (CPFile gives a new file its types when it creates it). False when cancelled.
bool SaveFileDialog(CPWnd* owner, FSpec* file, const char* filter, const char* defaultExt,
                    const FSpec* folder);

// ---- The seam for tests -------------------------------------------------------------------
// While answers are queued, each dialog takes the oldest instead of showing anything. An answer
// is the list of full paths the user "chose"; an empty list is a cancel. With no answer queued
// and no QApplication running, a dialog answers cancel rather than block.

void PushFileDialogAnswer(const char* path);
void PushFileDialogAnswer(const std::vector<std::string>& paths);
void PushFileDialogCancel();
// Forgets the queued answers and the record of the last request.
void ClearFileDialogScript();
int CountFileDialogAnswers();

// What the last dialog was asked, scripted or shown.
struct FileDialogRequest {
    bool save = false;         // SaveFileDialog rather than OpenFileDialog
    bool multiple = false;     // several files allowed
    int capacity = 0;          // records the caller has room for (1 unless multiple)
    std::string proposedName;  // save: the name offered
    std::string folder;        // the folder the dialog started in; empty when none was given
    std::vector<std::string> nameFilters;  // as offered, e.g. "BMP Files (*.bmp)"
    std::string defaultSuffix;  // save: the extension added to a bare name, without the dot
    std::string fileType;       // save: "TPIC" for a Targa filter, else "TEXT"
    std::string creator;        // save: "****"
};
// The number of dialogs asked since the last ClearFileDialogScript.
int CountFileDialogRequests();
FileDialogRequest GetLastFileDialogRequest();
