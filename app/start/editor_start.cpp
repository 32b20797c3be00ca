#include "app/start/editor_start.h"

#include <cstdio>
#include <filesystem>

#include "app/start/program_start.h"
#include "platform/instance/single_instance.h"
#include "platform/wnd/application.h"
#include "ui/main/run_editor.h"

int RunEditorSession(void* instance, const char* showPath)
{
    StartProgram(ProgramFront::kEditor, instance);
    int code = RunEditorWindows(showPath);
    StopProgram(ProgramFront::kEditor);
    return code;
}

int RunEditorOrHandOver(void* instance, const char* showPath, const std::string& address)
{
    if (showPath && showPath[0]) {
        // The running editor works in a folder of its own: it gets the path from the root.
        std::error_code error;
        std::string full = std::filesystem::absolute(showPath, error).string();
        if (HandToRunningEditor(address, error ? showPath : full))
            return 0;
    }
    bool listening = StartEditorListener(address);
    int code = RunEditorSession(instance, showPath);
    if (listening)
        StopEditorListener();
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
        std::fprintf(stderr,
                     "parallaxotron: no display to open the editor on; render a show with\n"
                     "  parallaxotron --render show.plx -o movie.mov\n");
        return 1;
    }
    int code = RunEditorOrHandOver(arguments, showPath, EditorInstanceAddress());
    StopApplication();
    return code;
}
