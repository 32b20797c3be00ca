#include "app/cli/command_line.h"

#include <cstdlib>

#ifndef PX_VERSION
#define PX_VERSION "0"
#endif

namespace {

// Frame numbers beyond this are refused as typed: no show is that long, and the arithmetic
// with them stays far from overflow.
constexpr size_t kLongestFrameNumber = 9;

bool AllDigits(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

bool ParseWhole(const std::string& text, long* value)
{
    if (!AllDigits(text) || text.size() > kLongestFrameNumber)
        return false;
    *value = std::strtol(text.c_str(), nullptr, 10);
    return true;
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

bool ParseFrameText(const std::string& text, FrameText* frame)
{
    FrameText read;
    read.text = text;
    if (text.find(':') == std::string::npos) {
        if (!ParseWhole(text, &read.frame))
            return false;
        *frame = read;
        return true;
    }
    // Two to four fields of one or two digits, the last being frames.
    std::vector<std::string> parts;
    size_t from = 0;
    for (;;) {
        size_t colon = text.find(':', from);
        parts.push_back(
            text.substr(from, colon == std::string::npos ? std::string::npos : colon - from));
        if (colon == std::string::npos)
            break;
        from = colon + 1;
    }
    if (parts.size() < 2 || parts.size() > 4)
        return false;
    int values[4] = {};
    size_t offset = 4 - parts.size();
    for (size_t i = 0; i < parts.size(); ++i) {
        if (!AllDigits(parts[i]) || parts[i].size() > 2)
            return false;
        values[offset + i] = std::atoi(parts[i].c_str());
    }
    if (values[1] > 59 || values[2] > 59)
        return false;
    read.timecode = true;
    for (int i = 0; i < 4; ++i)
        read.fields[i] = values[i];
    *frame = read;
    return true;
}

bool ParseAspect(const std::string& text, AspectChoice* aspect)
{
    AspectChoice read;
    read.text = text;
    std::string shape = text;
    if (shape == "16:9L" || shape == "16:9l") {
        read.letterbox = true;
        shape = "16:9";
    }
    size_t colon = shape.find(':');
    long width = 0;
    long height = 0;
    if (colon == std::string::npos || !ParseWhole(shape.substr(0, colon), &width) ||
        !ParseWhole(shape.substr(colon + 1), &height) || width < 1 || height < 1)
        return false;
    read.ratio = static_cast<double>(height) / static_cast<double>(width);
    // The camera window's height is the ratio times its width: keep it to sensible shapes.
    if (read.ratio < 0.01 || read.ratio > 10.0)
        return false;
    *aspect = read;
    return true;
}

const char* UsageText()
{
    return "Usage:\n"
           "  parallaxotron [show.plx]\n"
           "      Opens the editor, on the show when one is named.\n"
           "  parallaxotron --render show.plx -o movie.mov [options]\n"
           "  parallaxotron --render show.plx more.plx ... -o folder/ [options]\n"
           "      Renders each show to a movie without a window; with several shows, or -o naming\n"
           "      a folder, each becomes folder/<show name>.mov.\n"
           "  parallaxotron --render show.plx --still FRAME -o frame.tga [--size WxH] [--aspect A]\n"
           "      Renders one frame of the show as a Targa (.tga) or BMP (.bmp) picture.\n"
           "\n"
           "A render depends only on the show, its pictures and these options; the editor's\n"
           "remembered choices are not used unless --settings names a settings file.\n"
           "\n"
           "Options:\n"
           "  -o, --output FILE   the movie or picture to write; the movie's container follows\n"
           "                      its extension (.mov, .mp4, .avi, .mkv)\n"
           "  --size WxH          frame size in pixels, each side 1 to 4096 (default 1920x1080)\n"
           "  --aspect A          the camera window's shape: 4:3, 16:9, 16:9L (16:9 letterboxed\n"
           "                      in the frame) or W:H (default: the shape of --size)\n"
           "  --fps N             movie frame rate, up to 60 (default 29.97)\n"
           "  --start FRAME       first frame (default 0)\n"
           "  --end FRAME         frame to stop before (default: the end of the show)\n"
           "  --hold FRAME        also write the first and the last frame this many times\n"
           "                      (default: no holds)\n"
           "  --quality N         codec quality 0 to 100 (default 100)\n"
           "  --fields            render interlaced fields (default: whole frames)\n"
           "  --reverse           append the same run backwards\n"
           "  --codec FOURCC      avc1 (H.264), apcn (ProRes 422), mjpa (Motion JPEG), png,\n"
           "                      rle (Animation) or raw (default avc1); a codec the container\n"
           "                      cannot hold is replaced, and a line says by which\n"
           "  --still FRAME       render only this frame, as a picture\n"
           "  --settings FILE     take the defaults above from this settings file instead\n"
           "                      (it is read, never written)\n"
           "  --progress STYLE    bar (one updating line), lines (a line a second) or json (one\n"
           "                      object a line: frame, total, fps, eta_s); default: bar on a\n"
           "                      terminal, lines otherwise; all on stderr\n"
           "  --quiet             no progress and no closing line; errors are still printed\n"
           "  --version           the program's version\n"
           "  -h, --help          this text\n"
           "\n"
           "FRAME is a frame number (digits only, 150) or a timecode with colons at the show's\n"
           "rate (HH:MM:SS:FF, MM:SS:FF or SS:FF: 00:00:05:00). A range outside the show, or an\n"
           "empty one, is refused.\n"
           "\n"
           "H.264 movies are 4:2:0: an odd width or height is padded by one pixel, the last\n"
           "column or row repeated.\n"
           "\n"
           "Exit codes:\n"
           "  0    every file asked for was completely written\n"
           "  1    a file could not be read or written (show, picture, movie, still); the\n"
           "       line says which and why\n"
           "  2    usage: an option is wrong or does not fit the show (frame outside the show,\n"
           "       unknown codec, path over 255 characters, -o naming the show)\n"
           "  129  stopped by SIGHUP,  130 by SIGINT (Ctrl+C),  143 by SIGTERM: the render ends\n"
           "       after the current frame and the movie keeps the frames made so far\n"
           "Movies and stills are written beside their name and renamed into place when\n"
           "complete: a stopped or failed render never leaves a broken file under that name.\n";
}

std::string VersionText() { return std::string("parallaxotron ") + PX_VERSION + "\n"; }

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
        auto frame = [&](std::optional<FrameText>* out) {
            std::string text;
            FrameText read;
            if (!value(&text) || !ParseFrameText(text, &read))
                return false;
            *out = read;
            return true;
        };
        std::string text;
        long number = 0;
        if (argument == "-h" || argument == "--help") {
            line.kind = CommandKind::kHelp;
            return line;
        } else if (argument == "--version") {
            line.kind = CommandKind::kVersion;
            return line;
        } else if (argument == "--render") {
            if (!value(&text) || text.empty())
                return UsageError("--render needs a show file");
            line.shows.push_back(text);
            render = true;
        } else if (argument == "-o" || argument == "--output") {
            if (!value(&line.output) || line.output.empty())
                return UsageError(argument + " needs a file name");
        } else if (argument == "--settings") {
            if (!value(&text) || text.empty())
                return UsageError("--settings needs a settings file");
            line.settings = text;
        } else if (argument == "--size") {
            if (!value(&text) || !ParseSize(text, line))
                return UsageError("--size needs WIDTHxHEIGHT, each 1 to 4096, e.g. 1280x720");
        } else if (argument == "--aspect") {
            AspectChoice aspect;
            if (!value(&text) || !ParseAspect(text, &aspect))
                return UsageError("--aspect needs 4:3, 16:9, 16:9L or WIDTH:HEIGHT, e.g. 2:1");
            line.aspect = aspect;
        } else if (argument == "--fps") {
            char* end = nullptr;
            if (!value(&text) || text.empty() ||
                (line.framesPerSecond = std::strtof(text.c_str(), &end), *end != '\0') ||
                !(*line.framesPerSecond > 0.0f) || *line.framesPerSecond > 60.0f)
                return UsageError(
                    "--fps needs a frame rate above 0 and up to 60, e.g. 25 or 29.97");
        } else if (argument == "--start" || argument == "--end" || argument == "--hold" ||
                   argument == "--still") {
            std::optional<FrameText>* out = argument == "--start"  ? &line.start
                                            : argument == "--end"  ? &line.end
                                            : argument == "--hold" ? &line.hold
                                                                   : &line.still;
            if (!frame(out))
                return UsageError(argument +
                                  " needs a frame number (digits only, e.g. 150) or a timecode "
                                  "with colons (e.g. 00:00:05:00), not '" +
                                  (i < arguments.size() ? arguments[i] : "") + "'");
        } else if (argument == "--quality") {
            if (!value(&text) || !ParseWhole(text, &number) || number > 100)
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
        } else if (argument == "--progress") {
            if (!value(&text) || (text != "bar" && text != "lines" && text != "json"))
                return UsageError("--progress needs bar, lines or json");
            line.progress = text == "bar"     ? ProgressStyle::kBar
                            : text == "lines" ? ProgressStyle::kLines
                                              : ProgressStyle::kJson;
        } else if (argument == "--quiet") {
            line.quiet = true;
        } else if (!argument.empty() && argument[0] == '-') {
            return UsageError("unknown option " + argument);
        } else if (render || line.shows.empty()) {
            line.shows.push_back(argument);
        } else {
            return UsageError("more than one show named: " + line.shows.front() + " and " +
                              argument);
        }
    }
    if (line.still)
        line.kind = CommandKind::kStill;
    else if (render)
        line.kind = CommandKind::kRender;
    if (line.kind == CommandKind::kEditor && line.shows.size() > 1)
        return UsageError("more than one show named: " + line.shows[0] + " and " + line.shows[1]);
    if (line.kind != CommandKind::kEditor) {
        if (line.shows.empty())
            return UsageError("no show file named");
        if (line.output.empty())
            return UsageError("no output file named: add -o FILE");
        if (line.kind == CommandKind::kStill && line.shows.size() > 1)
            return UsageError("--still renders one show; " + std::to_string(line.shows.size()) +
                              " are named");
    }
    return line;
}
