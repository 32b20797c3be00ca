// Parallaxotron: turns still pictures into moving video by flying a camera over them.

#include <cstdio>
#include <string>
#include <vector>

#include "app/cli/command_line.h"
#include "app/cli/message_text.h"
#include "app/cli/render_command.h"
#include "app/cli/stop_signals.h"
#include "app/start/editor_start.h"

int main(int argc, char** argv)
{
    std::vector<std::string> arguments(argv + 1, argv + argc);
    CommandLine line = ParseCommandLine(arguments);
    switch (line.kind) {
    case CommandKind::kHelp:
        std::fputs(UsageText(), stdout);
        return kExitMade;
    case CommandKind::kVersion:
        std::fputs(VersionText().c_str(), stdout);
        return kExitMade;
    case CommandKind::kUsageError:
        std::fprintf(stderr, "parallaxotron: %s (see parallaxotron --help)\n",
                     PrintableText(line.error).c_str());
        return kExitUsage;
    case CommandKind::kRender:
    case CommandKind::kStill:
        WatchForStopSignals();
        return RunRenderCommand(line, stderr);
    case CommandKind::kEditor:
        return RunEditor(argv[0], line.shows.empty() ? nullptr : line.shows.front().c_str());
    }
    return kExitUsage;
}
