#include "ui/main/run_editor.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "platform/file/paths.h"
#include "platform/wnd/application.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"

int RunEditorWindows(const char* showPath)
{
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
    return code;
}
