#include "app/cli/command_line.h"

#include <cstdlib>

namespace {

bool ParseWhole(const std::string& text, long* value)
{
    if (text.empty())
        return false;
    char* end = nullptr;
    *value = std::strtol(text.c_str(), &end, 10);
    return *end == '\0';
}

bool ParseSize(const std::string& text, CommandLine& line)
{
    size_t cross = text.find_first_of("xX");
    long width = 0;
    long height = 0;
    if (cross == std::string::npos || !ParseWhole(text.substr(0, cross), &width) ||
        !ParseWhole(text.substr(cross + 1), &height) || width < 1 || height < 1 || width > 4096 ||
        height > 4096)
        return false;
    line.width = static_cast<int>(width);
    line.height = static_cast<int>(height);
    return true;
}

CommandLine UsageError(const std::string& message)
{
    CommandLine line;
    line.kind = CommandKind::kUsageError;
    line.error = message;
    return line;
}

}  // namespace

const char* UsageText()
{
    return "Usage:\n"
           "  parallaxotron [show.plx]\n"
           "      Opens the editor, on the show when one is named.\n"
           "  parallaxotron --render show.plx -o movie.mov [options]\n"
           "      Renders the show to a movie without a window.\n"
           "  parallaxotron --render show.plx --still FRAME -o frame.tga [--size WxH]\n"
           "      Renders one frame of the show as a Targa (.tga) or BMP (.bmp) picture.\n"
           "\n"
           "Options:\n"
           "  -o, --output FILE   the movie or picture to write; the movie's container follows\n"
           "                      its extension (.mov, .mp4, .avi, .mkv)\n"
           "  --size WxH          frame size in pixels, each side 1 to 4096 (default: the last\n"
           "                      movie size, 720x480 at first)\n"
           "  --fps N             movie frame rate, up to 60 (default: the last one, 29.97)\n"
           "  --start TC          first frame, as timecode HH:MM:SS:FF, MM:SS:FF or a frame count\n"
           "  --end TC            frame to stop before (default: the end of the show)\n"
           "  --quality N         codec quality 0 to 100 (default 100)\n"
           "  --fields            render interlaced fields\n"
           "  --reverse           append the same run backwards\n"
           "  --codec FOURCC      avc1 (H.264), apcn (ProRes 422), mjpa (Motion JPEG), png,\n"
           "                      rle (Animation) or raw (default: the last codec chosen)\n"
           "  --still FRAME       render only this frame, as a picture\n"
           "  -h, --help          this text\n"
           "\n"
           "Ctrl+C stops a render cleanly: the movie keeps the frames made so far.\n";
}

CommandLine ParseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine line;
    bool render = false;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        auto value = [&](std::string* out) {
            if (i + 1 >= arguments.size())
                return false;
            *out = arguments[++i];
            return true;
        };
        std::string text;
        long number = 0;
        if (argument == "-h" || argument == "--help") {
            line.kind = CommandKind::kHelp;
            return line;
        } else if (argument == "--render") {
            if (!value(&line.show))
                return UsageError("--render needs a show file");
            render = true;
        } else if (argument == "-o" || argument == "--output") {
            if (!value(&line.output))
                return UsageError(argument + " needs a file name");
        } else if (argument == "--size") {
            if (!value(&text) || !ParseSize(text, line))
                return UsageError("--size needs WIDTHxHEIGHT, each 1 to 4096, e.g. 1280x720");
        } else if (argument == "--fps") {
            char* end = nullptr;
            if (!value(&text) || (line.framesPerSecond = std::strtof(text.c_str(), &end), *end != '\0') ||
                !(*line.framesPerSecond > 0.0f))
                return UsageError("--fps needs a frame rate above 0, e.g. 25 or 29.97");
        } else if (argument == "--start" || argument == "--end") {
            if (!value(&text) || text.empty())
                return UsageError(argument + " needs a timecode, e.g. 00:00:10:00");
            (argument == "--start" ? line.start : line.end) = text;
        } else if (argument == "--quality") {
            if (!value(&text) || !ParseWhole(text, &number) || number < 0 || number > 100)
                return UsageError("--quality needs a number from 0 to 100");
            line.quality = static_cast<int>(number);
        } else if (argument == "--fields") {
            line.fields = true;
        } else if (argument == "--reverse") {
            line.reverse = true;
        } else if (argument == "--codec") {
            if (!value(&text) || text.empty() || text.size() > 4)
                return UsageError("--codec needs a four-character code such as avc1 or png");
            line.codec = text + std::string(4 - text.size(), ' ');
        } else if (argument == "--still") {
            if (!value(&line.stillFrame) || line.stillFrame.empty())
                return UsageError("--still needs a frame, e.g. 00:00:05:00 or 150");
        } else if (!argument.empty() && argument[0] == '-') {
            return UsageError("unknown option " + argument);
        } else if (line.show.empty()) {
            line.show = argument;
        } else {
            return UsageError("more than one show named: " + line.show + " and " + argument);
        }
    }
    if (!line.stillFrame.empty())
        line.kind = CommandKind::kStill;
    else if (render)
        line.kind = CommandKind::kRender;
    if (line.kind != CommandKind::kEditor) {
        if (line.show.empty())
            return UsageError("no show file named");
        if (line.output.empty())
            return UsageError("no output file named: add -o FILE");
    }
    return line;
}
