#include "app/start/program_start.h"

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "output/movie.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/shell.h"

CDoc* StartProgram(ProgramFront front, void* instance, const std::string& settingsText)
{
    if (front == ProgramFront::kEditor) {
        InitEnvironment(instance, kProgramName, kProgramKind);
    } else {
        SetEnvName(kProgramName);
        InitMP();
        LoadIniText(settingsText.data(), settingsText.size());
    }
    QTOpenMovies();
    pDoc = new CDoc();
    // The program runs as its own application, not hosted in a video editor.
    pDoc->standalone = 1;
    // Five minutes of whole frames, in the integer steps the program has always used.
    pDoc->showLength = (gFrameRate * 60 / 100) * 5;
    return pDoc;
}

void StopProgram(ProgramFront front)
{
    delete pDoc;
    pDoc = nullptr;
    if (front == ProgramFront::kEditor)
        CloseEnvironment();
    else
        CloseMP();
    QTCloseMovies();
}
