#include "ui/main/run_editor.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "output/movie.h"
#include "platform/file/paths.h"
#include "platform/wnd/application.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

namespace {

constexpr const char* kProgramName = "Parallaxotron";
constexpr int kStandaloneKind = 101;
constexpr long kShowMinutes = 5;

}  // namespace

int RunEditorSession(void* instance, const char* showPath)
{
    InitEnvironment(instance, kProgramName, kStandaloneKind);
    QTOpenMovies();

    pDoc = new CDoc;
    pDoc->standalone = 1;
    pDoc->showLength = (gFrameRate * 60 / 100) * kShowMinutes;
    EditorDocLink link;
    pDoc->AttachEditor(&link);

    pMain = new CMain(nullptr);
    SetOpenDocumentHandler(OpenDocumentFile);
    if (showPath && showPath[0]) {
        std::error_code error;
        std::string full = std::filesystem::absolute(showPath, error).string();
        FSpec spec = PathFSpec(error ? showPath : full.c_str());
        if (!OpenDocumentFile(&spec, true))
            std::fprintf(stderr, "parallaxotron: %s is not a show that can be opened\n", showPath);
    }

    int code = MessageLoop();

    SetOpenDocumentHandler(nullptr);
    delete pMain;
    pMain = nullptr;
    pDoc->AttachEditor(nullptr);
    delete pDoc;
    pDoc = nullptr;
    CloseEnvironment();
    QTCloseMovies();
    return code;
}

int RunEditor(char* programPath, const char* showPath)
{
    // Only the program's path goes to the toolkit: the show named on the command line is opened
    // here, once, not again by the toolkit's own look at the arguments.
    static int argumentCount = 1;
    static char* arguments[] = {programPath, nullptr};
    arguments[0] = programPath;
    if (!StartApplication(argumentCount, arguments)) {
        std::fprintf(stderr, "parallaxotron: no display to open the editor on; render a show with\n"
                             "  parallaxotron --render show.plx -o movie.mov\n");
        return 1;
    }
    int code = RunEditorSession(arguments, showPath);
    StopApplication();
    return code;
}
