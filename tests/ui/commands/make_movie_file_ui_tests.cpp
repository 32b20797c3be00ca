// "Make Movie File" and "Batch Render Movies" in the running editor: the options dialog answered
// with posted clicks and keys (its fields through the string box's script), the file, codec and
// message boxes through their scripts, and the movies read back through the movie reader (and
// ffprobe where it is installed).

#include "ui/commands/make_movie_file.h"

#include <gtest/gtest.h>
#include <QKeyEvent>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "image/cdib.h"
#include "output/movie.h"
#include "platform/dialog/codec_dialog.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/dialog/message_box.h"
#include "platform/dialog/posted_input.h"
#include "platform/dialog/string_box.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "support/bmp_files.h"
#include "support/editor_fixture.h"
#include "support/movie_frames.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"

namespace {

using pxtest::PathSpec;
using pxtest::Rgb;

using pxtest::kDemoShow;
constexpr const char* kMade = "Movie file(s) successfully made";

class MakeMovieCommand : public pxtest::Editor {
protected:
    void TearDown() override
    {
        QTMovieReadClose();
        QTMovieWriteClose();
        pxtest::Editor::TearDown();
    }
    // Small frames at 30 frames per second without fields, unless the settings say otherwise.
    void StartSmall(const std::string& settings = "")
    {
        // The first line of a key wins: the test's own settings come before the defaults.
        Start(settings +
                  "FrameRate=3000\r\nMovieWid=32\r\nMovieHgt=24\r\nMovieFPS=30\r\n"
                  "MovieFields=\r\n",
              false);
    }
    // A red picture from frame 0 and a green one from frame `greenFrom`, the show ending at
    // `end`.
    void RedThenGreen(long greenFrom, long end)
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("red.bmp"), 32, 24, Rgb{200, 0, 0}));
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("green.bmp"), 32, 24, Rgb{0, 200, 0}));
        FSpec red = PathSpec(dir.File("red.bmp"));
        FSpec green = PathSpec(dir.File("green.bmp"));
        pDoc->LoadPicture(&red, 0, 0);
        pDoc->LoadPicture(&green, 1, greenFrom);
        ASSERT_EQ(pDoc->picCount, 2);
        KeyStruct last = pDoc->keys[1][0];
        last.Frame = static_cast<int>(end - greenFrom);
        pDoc->SetKey(1, last, 1);
        KeyStruct first = pDoc->keys[0][0];
        first.Frame = static_cast<int>(greenFrom);
        pDoc->SetKey(1, first, 0);
    }
    // One red picture whose last key is at `end`.
    void OnePicture(long end)
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("red.bmp"), 32, 24, Rgb{200, 0, 0}));
        FSpec red = PathSpec(dir.File("red.bmp"));
        pDoc->LoadPicture(&red, 0, 0);
        ASSERT_EQ(pDoc->picCount, 1);
        KeyStruct last = pDoc->keys[0][0];
        last.Frame = static_cast<int>(end);
        pDoc->SetKey(1, last, 0);
    }

    DialogLayout Layout()
    {
        MovieDialogLists lists = MakeMovieDialog(*pDoc);
        return MakeDialogLayout(kMovieDialogX, kMovieDialogY, kMovieDialogRows, lists.descriptions,
                                false);
    }
    // The user clicks a field of the dialog and types `text` into the box that asks for it.
    void Type(int row, const char* text)
    {
        PushStringBoxAnswer(text);
        tagRECT area = DialogValueArea(Layout(), row);
        PostClick(pStage, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    void Toggle(int row)
    {
        tagRECT box = DialogCheckBox(Layout(), row);
        PostClick(pStage, (box.left + box.right) / 2, (box.top + box.bottom) / 2);
    }
    // OK for the options, then the movie's name, the codec and the closing message.
    void AnswerAll(const std::string& movie, const char* codec = "png ")
    {
        PostReturn(pStage);
        PushFileDialogAnswer(movie.c_str());
        PushCodecDialogAnswer(CodecDialogAnswer{true, codec, -1});
        PushMessageBoxAnswer(kBoxYes);
    }
    // Runs the command; a dialog still open after a while is cancelled, failing the test.
    int Run(bool batch)
    {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(pStage); });
        guard.start(20000);
        int result = MakeMovieFile(batch);
        EXPECT_TRUE(guard.isActive()) << "the command did not end on the input it was given";
        return result;
    }
    static std::vector<std::string> MessageTexts()
    {
        std::vector<std::string> texts;
        for (const ShownMessageBox& box : TakeShownMessageBoxes())
            texts.push_back(box.text);
        return texts;
    }
    static std::string Setting(const char* key)
    {
        char value[256] = {};
        GetIniString(key, "?", value, sizeof value - 1);
        return value;
    }
    long Frames(const std::string& name) { return pxtest::MovieFrames(dir.File(name)); }
    // The colour of the middle pixel of movie frame `index`, and the movie's frame size.
    Rgb Colour(const std::string& name, long index, int* width = nullptr)
    {
        FSpec movie = PathSpec(dir.File(name));
        CDIB frame(1, 1, 32);
        Rgb colour{0, 0, 0};
        if (QTMovieReadOpen(&movie, &frame) && QTMovieReadFrame(index * 100, &frame)) {
            const unsigned char* pixel =
                frame.GetBitsAdd(frame.GetHgt() / 2) + frame.GetWid() / 2 * 4;
            colour = Rgb{pixel[2], pixel[1], pixel[0]};
            if (width)
                *width = frame.GetWid();
        }
        QTMovieReadClose();
        return colour;
    }
};

// The pictures are made video-safe on loading, so their colours come back a little muted.
bool IsRed(Rgb colour) { return colour.red > 150 && colour.green < 50; }
bool IsGreen(Rgb colour) { return colour.green > 150 && colour.red < 50; }

// What ffprobe says of a movie's video stream (codec_name, nb_read_frames, duration, ...);
// empty without ffprobe.
std::map<std::string, std::string> Probe(const std::string& path)
{
    std::map<std::string, std::string> fields;
    std::string command =
        "ffprobe -v error -count_frames -select_streams v:0 -show_entries "
        "stream=codec_name,nb_read_frames,duration,width,height,r_frame_rate "
        "-of default=noprint_wrappers=1 '" +
        path + "' 2>/dev/null";
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return fields;
    char line[512];
    while (std::fgets(line, sizeof line, pipe)) {
        std::string text = line;
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        size_t equals = text.find('=');
        if (equals != std::string::npos)
            fields[text.substr(0, equals)] = text.substr(equals + 1);
    }
    pclose(pipe);
    return fields;
}

bool HaveFfprobe() { return std::system("ffprobe -version >/dev/null 2>&1") == 0; }

TEST_F(MakeMovieCommand, TheDialogHasItsNineRowsInOrderFromTheSettings)
{
    StartSmall();
    OnePicture(45);
    MovieDialogLists lists = MakeMovieDialog(*pDoc);
    const char* descriptions[] = {"Width",        "Height",           "Start Timecode",
                                  "End Timecode", "Head/Tail Holds",  "FrameRate",
                                  "@SQuality",    "@CRender Fields?", "@CReverse too?"};
    const char* values[] = {"32", "24", "00:00:00", "00:01:15", "00:00:00", "30", "100", "", ""};
    for (int row = 0; row < kMovieDialogRows; ++row) {
        EXPECT_STREQ(lists.descriptions + row * kDialogRowSize, descriptions[row]) << row;
        char value[kDialogRowSize];
        GetDialogValue(lists.values, row, value);
        EXPECT_STREQ(value, values[row]) << row;
    }
}

TEST_F(MakeMovieCommand, WithoutSettingsTheDialogShowsTheDefaults)
{
    StartSmall();
    std::string bare = "[Parallaxotron]\r\n";
    LoadIniText(bare.data(), bare.size());
    OnePicture(30);
    MovieDialogLists lists = MakeMovieDialog(*pDoc);
    const char* values[] = {"720",   "480", "00:00:00", "00:01:00", "00:00:00",
                            "29.97", "100", "1",        ""};
    for (int row = 0; row < kMovieDialogRows; ++row) {
        char value[kDialogRowSize];
        GetDialogValue(lists.values, row, value);
        EXPECT_STREQ(value, values[row]) << row;
    }
}

TEST_F(MakeMovieCommand, TheValuesAreConvertedClampedAndLimited)
{
    StartSmall();
    MovieDialogLists lists = MakeMovieDialog(*pDoc);
    SetDialogValue(lists.values, kMovieRowWidth, "5000");
    SetDialogValue(lists.values, kMovieRowHeight, "-3");
    SetDialogValue(lists.values, kMovieRowStart, "00:00:10");
    SetDialogValue(lists.values, kMovieRowEnd, "00:02:00");
    SetDialogValue(lists.values, kMovieRowHolds, "00:01:00");
    SetDialogValue(lists.values, kMovieRowRate, "75");
    SetDialogValue(lists.values, kMovieRowQuality, "59");
    SetDialogValue(lists.values, kMovieRowFields, "1");
    SetDialogValue(lists.values, kMovieRowReverse, "0");
    MovieOptions options = ReadMovieDialog(lists);
    EXPECT_EQ(options.width, 4096);
    EXPECT_EQ(options.height, 0);
    EXPECT_EQ(options.start, 10);
    EXPECT_EQ(options.end, 60);
    EXPECT_EQ(options.holds, 30);
    EXPECT_EQ(options.framesPerSecond, 60.0f);
    EXPECT_EQ(options.quality, 59);
    EXPECT_TRUE(options.fields);
    EXPECT_TRUE(options.reverse);  // only an empty check value is off
    SetDialogValue(lists.values, kMovieRowRate, "-5");
    SetDialogValue(lists.values, kMovieRowReverse, "");
    options = ReadMovieDialog(lists);
    EXPECT_EQ(options.framesPerSecond, 0.0f);
    EXPECT_FALSE(options.reverse);
    SetDialogValue(lists.values, kMovieRowRate, "1e999");
    SetDialogValue(lists.values, kMovieRowWidth, "99999999999999999999");
    options = ReadMovieDialog(lists);
    EXPECT_EQ(options.framesPerSecond, 60.0f);
    EXPECT_EQ(options.width, 4096);
    SetDialogValue(lists.values, kMovieRowRate, "1e-999");
    EXPECT_EQ(ReadMovieDialog(lists).framesPerSecond, 0.0f);
    SetDialogValue(lists.values, kMovieRowRate, "nan");
    EXPECT_EQ(ReadMovieDialog(lists).framesPerSecond, 0.0f);
    SetDialogValue(lists.values, kMovieRowRate, "fast");
    EXPECT_EQ(ReadMovieDialog(lists).framesPerSecond, 0.0f);
}

TEST_F(MakeMovieCommand, TheRememberedMovieKindComesFirstInTheFilter)
{
    EXPECT_EQ(MovieFileFilter(0),
              "AVI Files (*.avi)|*.avi|QuickTime Movies (*.mov)|*.mov|DPS Files (*.dps)|*.dps|"
              "VideoToaster Files (*.rtv)|*.rtv|All Files *.*|*.*||");
    EXPECT_EQ(MovieFileFilter(1),
              "QuickTime Movies (*.mov)|*.mov|AVI Files (*.avi)|*.avi|DPS Files (*.dps)|*.dps|"
              "VideoToaster Files (*.rtv)|*.rtv|All Files *.*|*.*||");
    EXPECT_EQ(MovieFileFilter(3),
              "VideoToaster Files (*.rtv)|*.rtv|AVI Files (*.avi)|*.avi|"
              "QuickTime Movies (*.mov)|*.mov|DPS Files (*.dps)|*.dps|All Files *.*|*.*||");
    EXPECT_EQ(MovieFileFilter(7), MovieFileFilter(0));
    EXPECT_STREQ(MovieTypeExtension(1), ".mov");
    EXPECT_STREQ(MovieTypeExtension(-1), ".avi");
}

TEST_F(MakeMovieCommand, TheSaveDialogOffersTheRememberedKindFirst)
{
    StartSmall("MovieType=2\r\n");
    OnePicture(5);
    PostReturn(pStage);
    PushFileDialogCancel();
    EXPECT_EQ(Run(false), 0);
    ASSERT_EQ(CountFileDialogRequests(), 1);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_TRUE(request.save);
    ASSERT_EQ(request.nameFilters.size(), 5u);
    EXPECT_EQ(request.nameFilters[0], "DPS Files (*.dps)");
    EXPECT_EQ(request.nameFilters[1], "AVI Files (*.avi)");
    EXPECT_EQ(request.nameFilters[2], "QuickTime Movies (*.mov)");
    EXPECT_EQ(request.defaultSuffix, "dps");
}

TEST_F(MakeMovieCommand, StartAfterEndRendersTheFramesBackwards)
{
    StartSmall();
    RedThenGreen(5, 20);
    Type(kMovieRowStart, "00:00:10");
    Type(kMovieRowEnd, "00:00:00");
    AnswerAll(dir.File("back.mov"));
    EXPECT_EQ(Run(false), 1);
    EXPECT_EQ(MessageTexts(), std::vector<std::string>{kMade});
    // Frames 10 down to 1: 10..5 green, 4..1 red.
    ASSERT_EQ(Frames("back.mov"), 10);
    for (long index = 0; index < 10; ++index) {
        Rgb colour = Colour("back.mov", index);
        EXPECT_TRUE(index < 6 ? IsGreen(colour) : IsRed(colour)) << index;
    }
    EXPECT_EQ(Setting("MovieStart"), "00:00:10");
}

TEST_F(MakeMovieCommand, OneSecondHoldsAddThirtyFramesAtEachEnd)
{
    StartSmall();
    RedThenGreen(3, 20);
    Type(kMovieRowEnd, "00:00:05");
    Type(kMovieRowHolds, "00:01:00");  // one second at 30 frames per second
    AnswerAll(dir.File("hold.mov"));
    EXPECT_EQ(Run(false), 1);
    ASSERT_EQ(Frames("hold.mov"), 30 + 5 + 30);
    // Frames 0..2 are red and 3..4 green: the first frame held before, the last after.
    EXPECT_TRUE(IsRed(Colour("hold.mov", 0)));
    EXPECT_TRUE(IsRed(Colour("hold.mov", 32)));
    EXPECT_TRUE(IsGreen(Colour("hold.mov", 33)));
    EXPECT_TRUE(IsGreen(Colour("hold.mov", 64)));
    EXPECT_EQ(Setting("MovieHold"), "00:01:00");
}

TEST_F(MakeMovieCommand, AWidthOf5000IsClampedTo4096)
{
    StartSmall();
    OnePicture(20);
    Type(kMovieRowWidth, "5000");
    Type(kMovieRowEnd, "00:00:02");
    AnswerAll(dir.File("wide.mov"));
    EXPECT_EQ(Run(false), 1);
    EXPECT_EQ(Frames("wide.mov"), 2);
    int width = 0;
    EXPECT_TRUE(IsRed(Colour("wide.mov", 0, &width)));
    EXPECT_EQ(width, 4096);
    EXPECT_EQ(Setting("MovieWid"), "4096");
}

TEST_F(MakeMovieCommand, AFrameRateOf75IsWrittenAs60)
{
    StartSmall();
    OnePicture(20);
    Type(kMovieRowRate, "75");
    Type(kMovieRowEnd, "00:00:03");
    AnswerAll(dir.File("fast.mov"));
    EXPECT_EQ(Run(false), 1);
    EXPECT_EQ(Setting("MovieFPS"), "60.00");
    EXPECT_EQ(GetMovieCodecSettings().frameRate, 6000);
    EXPECT_EQ(Frames("fast.mov"), 3);
    if (HaveFfprobe()) {
        EXPECT_EQ(Probe(dir.File("fast.mov"))["r_frame_rate"], "60/1");
    }
}

TEST_F(MakeMovieCommand, EscDuringTheRunEndsItWritesTheTailHoldAndReportsSuccess)
{
    StartSmall();
    RedThenGreen(3, 200);
    Type(kMovieRowEnd, "00:06:00");  // 180 frames
    Type(kMovieRowHolds, "00:00:02");
    AnswerAll(dir.File("esc.mov"));
    // A real key press reaches the stage once the run is a few frames in.
    long pressedAt = -1;
    QTimer typist;
    QObject::connect(&typist, &QTimer::timeout, [&] {
        if (pressedAt >= 0 || gCurFrame < 6 || CountCodecDialogAnswers() != 0)
            return;
        pressedAt = gCurFrame;
        TypeEscape(pStage);
    });
    typist.start(1);
    EXPECT_EQ(Run(false), 1);
    typist.stop();
    ASSERT_GE(pressedAt, 6);
    ASSERT_LT(pressedAt, 180);
    EXPECT_EQ(MessageTexts(), std::vector<std::string>{kMade});
    // The frames before the key, both holds; the movie is finished and reads back.
    long frames = Frames("esc.mov");
    EXPECT_EQ(frames, 2 + pressedAt + 2);
    EXPECT_TRUE(IsGreen(Colour("esc.mov", frames - 1)));
    EXPECT_TRUE(IsGreen(Colour("esc.mov", frames - 2)));
    if (HaveFfprobe()) {
        EXPECT_EQ(Probe(dir.File("esc.mov"))["nb_read_frames"], std::to_string(frames));
    }
}

TEST_F(MakeMovieCommand, CancellingTheOptionsAsksNothingMore)
{
    StartSmall();
    OnePicture(5);
    PostEscape(pStage);
    EXPECT_EQ(Run(false), 0);
    EXPECT_EQ(CountFileDialogRequests(), 0);
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
    EXPECT_TRUE(MessageTexts().empty());
}

TEST_F(MakeMovieCommand, CancellingTheCodecMakesNoFileAndKeepsTheCodec)
{
    StartSmall("CodecType=raw \r\n");
    OnePicture(5);
    PostReturn(pStage);
    PushFileDialogAnswer(dir.File("none.mov").c_str());
    PushCodecDialogCancel();
    EXPECT_EQ(Run(false), 0);
    EXPECT_FALSE(pxtest::FileExists(dir.File("none.mov")));
    EXPECT_TRUE(MessageTexts().empty());
    EXPECT_EQ(Setting("CodecType"), "raw ");
}

TEST_F(MakeMovieCommand, TheCodecChosenIsKeptAndOfferedNextTime)
{
    StartSmall();
    OnePicture(5);
    Type(kMovieRowEnd, "00:00:02");
    AnswerAll(dir.File("first.mov"), "png ");
    EXPECT_EQ(Run(false), 1);
    EXPECT_EQ(Setting("CodecType"), "png ");
    std::vector<ShownCodecDialog> shown = TakeShownCodecDialogs();
    ASSERT_EQ(shown.size(), 1u);
    bool offersPng = false;
    for (const CodecDialogCodec& codec : shown[0].codecs)
        offersPng = offersPng || codec.type == "png ";
    EXPECT_TRUE(offersPng);
    EXPECT_EQ(shown[0].chosen.type, "png ");

    PostReturn(pStage);
    PushFileDialogAnswer(dir.File("second.mov").c_str());
    PushCodecDialogAnswer(CodecDialogAnswer{true, "", -1});
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_EQ(Run(false), 1);
    shown = TakeShownCodecDialogs();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].offered.type, "png ");
    // The end is the show's end again: it is not one of the options kept.
    EXPECT_EQ(Frames("second.mov"), 5);
}

TEST_F(MakeMovieCommand, AnAviNeedsNoCodecDialog)
{
    StartSmall();
    OnePicture(5);
    Type(kMovieRowEnd, "00:00:02");
    PostReturn(pStage);
    PushFileDialogAnswer(dir.File("plain.avi").c_str());
    PushMessageBoxAnswer(kBoxYes);
    EXPECT_EQ(Run(false), 1);
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
    EXPECT_TRUE(pxtest::FileExists(dir.File("plain.avi")));
    EXPECT_EQ(Setting("MovieType"), "0");
    if (HaveFfprobe()) {
        EXPECT_EQ(Probe(dir.File("plain.avi"))["nb_read_frames"], "2");
    }
}

TEST_F(MakeMovieCommand, BatchMakesOneMovieWithBForEveryShowChosen)
{
    StartSmall();
    OnePicture(6);
    ASSERT_TRUE(std::filesystem::create_directory(dir.File("shows")));
    FSpec first = PathSpec(dir.File("shows/first.plx"));
    ASSERT_TRUE(pDoc->WriteShowFile(&first));
    KeyStruct last = pDoc->keys[0][1];
    last.Frame = 4;
    pDoc->SetKey(1, last, 0);
    FSpec second = PathSpec(dir.File("shows/second.plx"));
    ASSERT_TRUE(pDoc->WriteShowFile(&second));
    // The user's own show, changed since it was saved, at frame 2.
    pDoc->showFile.Set(second);
    last.Frame = 9;
    pDoc->SetKey(1, last, 0);
    ASSERT_TRUE(pDoc->dirty);
    pDoc->GotoFrame(2, true);
    gCurFrame = 2;

    PostReturn(pStage);
    PushFileDialogAnswer({dir.File("shows/first.plx"), dir.File("shows/second.plx")});
    PushFileDialogAnswer(dir.File("out.mov").c_str());
    PushCodecDialogAnswer(CodecDialogAnswer{true, "png ", -1});
    PushMessageBoxAnswer(kBoxYes);
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(pStage); });
    guard.start(20000);
    EXPECT_EQ(PostAMessage(pMain, kMsgCommand, 1014, 0), 1);
    EXPECT_TRUE(guard.isActive());
    EXPECT_EQ(MessageTexts(), std::vector<std::string>{kMade});
    EXPECT_EQ(Frames("firstB.mov"), 6);
    EXPECT_EQ(Frames("secondB.mov"), 4);
    EXPECT_FALSE(pxtest::FileExists(dir.File("out.mov")));
    // The editor has the user's show back as it was.
    EXPECT_EQ(pDoc->picCount, 1);
    EXPECT_EQ(pDoc->keys[0][1].Frame, 9);
    EXPECT_EQ(ShowEnd(*pDoc), 9);
    EXPECT_TRUE(pDoc->dirty);
    EXPECT_STREQ(pDoc->showFile.path, dir.File("shows/second.plx").c_str());
    EXPECT_EQ(gCurFrame, 2);
    EXPECT_EQ(Setting("InitialFolder"), dir.File("shows/"));
    EXPECT_EQ(Setting("InitialVrefnum"), "9991");
    EXPECT_EQ(Setting("InitialParID"), "9991");
}

TEST_F(MakeMovieCommand, CancellingTheShowChoiceStopsTheBatch)
{
    StartSmall();
    OnePicture(5);
    PostReturn(pStage);
    PushFileDialogCancel();
    EXPECT_EQ(Run(true), 0);
    ASSERT_EQ(CountFileDialogRequests(), 1);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_FALSE(request.save);
    EXPECT_TRUE(request.multiple);
    ASSERT_EQ(request.nameFilters.size(), 2u);
    EXPECT_EQ(request.nameFilters[0], "Parallaxotron Files (*.plx)");
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
}

TEST_F(MakeMovieCommand, CtrlKMakesAMovie)
{
    StartSmall();
    OnePicture(5);
    Type(kMovieRowEnd, "00:00:03");
    AnswerAll(dir.File("key.mov"));
    EXPECT_EQ(pMain->HandleEvent(kMsgShortcut, 'k', kShortcutMark), 1);
    EXPECT_EQ(MessageTexts(), std::vector<std::string>{kMade});
    EXPECT_EQ(Frames("key.mov"), 3);
}

TEST_F(MakeMovieCommand, TheMenuMakesATwoSecondMovieOfTheDemoShow)
{
    StartSmall("MovieWid=64\r\nMovieHgt=48\r\n");
    FSpec demo = PathSpec(kDemoShow);
    ASSERT_TRUE(OpenDocumentFile(&demo, true));
    gFrameRate = 3000;
    const char* codec = IsCodecAvailable("avc1") ? "avc1" : "png ";
    Type(kMovieRowEnd, "00:02:00");
    AnswerAll(dir.File("demo.mov"), codec);
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] { PostEscape(pStage); });
    guard.start(20000);
    EXPECT_EQ(PostAMessage(pMain, kMsgCommand, 1013, 0), 1);
    EXPECT_TRUE(guard.isActive());
    EXPECT_EQ(MessageTexts(), std::vector<std::string>{kMade});
    EXPECT_EQ(Frames("demo.mov"), 60);
    if (!HaveFfprobe())
        GTEST_SKIP() << "ffprobe is not installed; the movie reader read 60 frames";
    std::map<std::string, std::string> probe = Probe(dir.File("demo.mov"));
    EXPECT_EQ(probe["codec_name"], std::string(codec) == "avc1" ? "h264" : "png");
    EXPECT_EQ(probe["nb_read_frames"], "60");
    EXPECT_EQ(probe["width"], "64");
    EXPECT_EQ(probe["height"], "48");
    EXPECT_NEAR(std::atof(probe["duration"].c_str()), 2.0, 1e-6);
}

}  // namespace
