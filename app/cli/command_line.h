#pragma once
// The command line: what the user asked for, read from the arguments, and the help text.
//
//   parallaxotron [show.plx]
//   parallaxotron --render show.plx [more.plx ...] -o out.mov|folder/ [options]
//   parallaxotron --render show.plx --still FRAME -o frame.tga|frame.bmp [--size WxH] [--aspect A]
//   parallaxotron --help | --version
//
// Only the form of each argument is checked here; whether a frame lies inside the show is
// known once the show is read (render_command).

#include <optional>
#include <string>
#include <vector>

enum class CommandKind {
    kEditor,  // open the editor, on the show if one is named
    kRender,  // a movie of each show
    kStill,   // one frame of the show as a picture
    kHelp,
    kVersion,
    kUsageError,
};

// A frame as typed: a frame number (digits only) or a timecode with colons.
struct FrameText {
    std::string text;  // as typed, for messages
    bool timecode = false;
    long frame = 0;      // a frame number
    int fields[4] = {};  // a timecode: hours, minutes, seconds, frames
};

// The picture's shape: height to width, and whether 16:9 is letterboxed inside a 4:3 frame.
struct AspectChoice {
    std::string text;  // as typed: "4:3", "16:9", "16:9L", "W:H"
    double ratio = 0.75;
    bool letterbox = false;
};

enum class ProgressStyle {
    kAuto,   // an updating line on a terminal, otherwise lines
    kBar,    // one line rewritten in place
    kLines,  // a line every second
    kJson,   // one JSON object a line: frame, total, fps, eta_s
};

struct CommandLine {
    CommandKind kind = CommandKind::kEditor;
    std::string error;                    // for kUsageError: what was wrong
    std::vector<std::string> shows;       // the show files; one except for a batch into a folder
    std::string output;                   // -o: a file, or a folder (ending in "/" or existing)
    std::optional<std::string> settings;  // --settings FILE: defaults from that settings file
    std::optional<int> width;
    std::optional<int> height;
    std::optional<float> framesPerSecond;
    std::optional<FrameText> start;
    std::optional<FrameText> end;
    std::optional<FrameText> hold;
    std::optional<FrameText> still;
    std::optional<AspectChoice> aspect;
    std::optional<int> quality;
    bool fields = false;
    bool reverse = false;
    std::optional<std::string> codec;  // four characters, padded with spaces ("png" is "png ")
    ProgressStyle progress = ProgressStyle::kAuto;
    bool quiet = false;
};

CommandLine ParseCommandLine(const std::vector<std::string>& arguments);
// Reads a frame number (digits only) or a timecode with colons (HH:MM:SS:FF, MM:SS:FF, SS:FF;
// minutes and seconds 0 to 59). False for anything else.
bool ParseFrameText(const std::string& text, FrameText* frame);
// Reads 4:3, 16:9, 16:9L or W:H (whole numbers). False for anything else.
bool ParseAspect(const std::string& text, AspectChoice* aspect);
// The text --help prints, with the defaults and the exit codes.
const char* UsageText();
// "parallaxotron 1.0" and the FFmpeg libraries it was built with.
std::string VersionText();
