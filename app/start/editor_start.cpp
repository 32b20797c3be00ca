#include "app/start/editor_start.h"

#include <cstdio>

#include "app/start/program_start.h"
#include "platform/wnd/application.h"
#include "ui/main/run_editor.h"

int RunEditorSession(void* instance, const char* showPath)
{
    StartProgram(ProgramFront::kEditor, instance);
    int code = RunEditorWindows(showPath);
    StopProgram(ProgramFront::kEditor);
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
    int code = RunEditorSession(arguments, showPath);
    StopApplication();
    return code;
}
