#pragma once
// The command line: what the user asked for, read from the arguments, and the help text.
//
//   parallaxotron [show.plx]
//   parallaxotron --render show.plx -o out.mov [--size WxH] [--fps N] [--start TC] [--end TC]
//                 [--quality N] [--fields] [--reverse] [--codec FOURCC]
//   parallaxotron --render show.plx --still FRAME -o frame.tga|frame.bmp [--size WxH]
//   parallaxotron --help

#include <optional>
#include <string>
#include <vector>

enum class CommandKind {
    kEditor,  // open the editor, on the show if one is named
    kRender,  // a movie of the show
    kStill,   // one frame of the show as a picture
    kHelp,
    kUsageError,
};

struct CommandLine {
    CommandKind kind = CommandKind::kEditor;
    std::string error;   // for kUsageError: what was wrong
    std::string show;    // the show file
    std::string output;  // -o
    std::optional<int> width;
    std::optional<int> height;
    std::optional<float> framesPerSecond;
    std::optional<std::string> start;  // timecodes as typed
    std::optional<std::string> end;
    std::optional<int> quality;
    bool fields = false;
    bool reverse = false;
    std::optional<std::string> codec;  // four characters, padded with spaces ("png" is "png ")
    std::string stillFrame;            // timecode or frame number of --still
};

CommandLine ParseCommandLine(const std::vector<std::string>& arguments);
// The text --help prints.
const char* UsageText();
