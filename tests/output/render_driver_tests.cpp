// The movie render driver: runs forwards and backwards, holds, clamps, cancelling, dissolves,
// the job's messages and settings, batch names. Movies are written for real with a lossless
// codec and read back through the movie reader.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "doc/doc_fixture.h"
#include "doc/globals.h"
#include "output/ffmpeg_movie.h"
#include "output/frame_queue.h"
#include "output/movie.h"
#include "output/render_driver.h"
#include "platform/dialog/message_box.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "support/bmp_files.h"
#include "support/file_size_limit.h"
#include "support/movie_frames.h"
#include "support/temp_dir.h"

namespace {

using pxtest::PathSpec;
using pxtest::Rgb;

// Records what the driver shows, and cancels once `cancelAt` frames have been shown.
class RecordingProgress : public RenderProgress {
public:
    void Progress(double fraction, const char* text) override
    {
        fractions.push_back(fraction);
        texts.emplace_back(text);
    }
    void ShowFrame(long frame) override
    {
        frames.push_back(frame);
        split.push_back(gMultiProcess);
    }
    void FrameWritten() override { ++written; }
    bool CancelRequested() override
    {
        return cancelAt >= 0 && static_cast<long>(frames.size()) > cancelAt;
    }

    std::vector<double> fractions;
    std::vector<std::string> texts;
    std::vector<long> frames;
    std::vector<bool> split;  // whether the frame was to be split over both processors
    long written = 0;
    long cancelAt = -1;
};

constexpr int kWidth = 16;
constexpr int kHeight = 12;

class RenderDriver : public DocFixture {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
        gFrameRate = 3000;
        ClearMessageBoxScript();
        UseCodec("png ");
    }

    void TearDown() override
    {
        QTMovieReadClose();
        QTMovieWriteClose();
        ClearMessageBoxScript();
    }

    // One flat picture from frame 0, its camera still on the whole of it until `lastKey`.
    void OnePicture(Rgb colour, long lastKey)
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("one.bmp"), 32, 24, colour));
        FSpec spec = PathSpec(dir.File("one.bmp"));
        doc->LoadPicture(&spec, 0, 0);
        ASSERT_EQ(doc->picCount, 1);
        KeyStruct last = doc->keys[0][0];
        last.Frame = static_cast<int>(lastKey);
        doc->SetKey(1, last, 0);
    }

    // Red from frame 0, green from frame 20 with a dissolve of `transition` frames into it.
    void RedThenGreen(float transition)
    {
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("red.bmp"), 32, 24, Rgb{200, 0, 0}));
        ASSERT_TRUE(pxtest::WriteFlatBmp(dir.File("green.bmp"), 32, 24, Rgb{0, 200, 0}));
        FSpec red = PathSpec(dir.File("red.bmp"));
        FSpec green = PathSpec(dir.File("green.bmp"));
        doc->LoadPicture(&red, 0, 0);
        doc->LoadPicture(&green, 1, 20);
        for (int pic = 0; pic < 2; ++pic) {
            KeyStruct last = doc->keys[pic][0];
            last.Frame = 20;
            doc->SetKey(1, last, pic);
        }
        doc->keys[1][0].TransLen = transition;
    }

    // Opens a movie for MakeMovie as the job would.
    bool OpenMovie(const std::string& name, CDIB* frame)
    {
        FSpec movie = PathSpec(dir.File(name));
        return QTSelectCodec(nullptr, 30.0f, 100, false) &&
               QTMovieWriteOpen(false, &movie, frame, 30.0f, 100, 0);
    }

    // The frames of a finished movie in the test's folder.
    long MovieFrames(const std::string& name) { return pxtest::MovieFrames(dir.File(name)); }

    // Red, green and blue of the middle pixel of movie frame `index`.
    Rgb MovieColour(const std::string& name, long index)
    {
        FSpec movie = PathSpec(dir.File(name));
        CDIB frame(1, 1, 32);
        Rgb colour{0, 0, 0};
        if (QTMovieReadOpen(&movie, &frame) && QTMovieReadFrame(index * 100, &frame)) {
            const unsigned char* pixel =
                frame.GetBitsAdd(frame.GetHgt() / 2) + frame.GetWid() / 2 * 4;
            colour = Rgb{pixel[2], pixel[1], pixel[0]};
        }
        QTMovieReadClose();
        return colour;
    }

    MovieJob Job(const std::string& name, long start, long end)
    {
        MovieJob job;
        job.options.width = kWidth;
        job.options.height = kHeight;
        job.options.start = start;
        job.options.end = end;
        job.options.framesPerSecond = 30.0f;
        job.options.fields = false;
        job.movie = PathSpec(dir.File(name));
        return job;
    }

    static std::string Setting(const char* key)
    {
        char value[256] = {};
        GetIniString(key, "?", value, sizeof value - 1);
        return value;
    }

    void RenderSixFramesWithTheWorker(bool multipleProcessors);

    pxtest::TempDir dir;
    RecordingProgress progress;
};

TEST_F(RenderDriver, EndBeforeStartRendersTheFramesBackwards)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("back.mov", &frame));
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 10, 0, 0, 100, progress));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_EQ(progress.frames, (std::vector<long>{10, 9, 8, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(MovieFrames("back.mov"), 10);
    EXPECT_EQ(gCurFrame, 0);
}

TEST_F(RenderDriver, OneSecondHoldsAddThirtyFramesAtEachEnd)
{
    UseSettings("MovieHold=00:01:00\r\n");
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieOptions options = LoadMovieOptions(*doc);
    EXPECT_EQ(options.holds, 30);
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("hold.mov", &frame));
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 0, 5, options.holds, 100, progress));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_EQ(progress.written, 65);
    EXPECT_EQ(MovieFrames("hold.mov"), 65);
    EXPECT_EQ(std::count(progress.texts.begin(), progress.texts.end(),
                         std::string("Rendering Hold... (Hit any key to cancel)")),
              60);
    EXPECT_EQ(std::count(progress.texts.begin(), progress.texts.end(),
                         std::string("Rendering... (Hit Esc key to cancel)")),
              5);
}

TEST_F(RenderDriver, HoldsRepeatTheFirstFrameBeforeTheRunAndTheLastAfterIt)
{
    // Frames 18 and 19 are red, 20 and 21 green: the run's first and last frames differ.
    RedThenGreen(0.0f);
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("held.mov", &frame));
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 18, 22, 3, 100, progress));
    EXPECT_TRUE(QTMovieWriteClose());
    ASSERT_EQ(MovieFrames("held.mov"), 3 + 4 + 3);
    // Three holds of frame 18, the run 18..21, three holds of frame 21.
    const std::vector<uint8_t> red{200, 200, 200, 200, 200, 0, 0, 0, 0, 0};
    for (long index = 0; index < 10; ++index) {
        Rgb colour = MovieColour("held.mov", index);
        EXPECT_EQ(colour.red, red[static_cast<size_t>(index)]) << index;
        EXPECT_EQ(colour.green, 200 - red[static_cast<size_t>(index)]) << index;
    }
}

TEST_F(RenderDriver, HoldProgressRunsFromZeroByOneHold)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("hold.mov", &frame));
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 0, 1, 4, 100, progress));
    // Run progress 0 of 1, then the head hold 0, 1/4, 2/4, 3/4, then the tail hold again.
    std::vector<double> expected{0.0, 0.0, 0.25, 0.5, 0.75, 0.0, 0.25, 0.5, 0.75};
    EXPECT_EQ(progress.fractions, expected);
}

TEST_F(RenderDriver, WidthOf5000IsClampedTo4096)
{
    UseSettings("MovieWid=5000\r\nMovieHgt=-3\r\n");
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieOptions options = LoadMovieOptions(*doc);
    EXPECT_EQ(options.width, 4096);
    EXPECT_EQ(options.height, 0);
}

TEST_F(RenderDriver, MovieNumbersOutOfRangeOrNotNumbersGiveTheirDefaults)
{
    UseSettings(
        "MovieWid=99999999999999999999\r\nMovieHgt=abc\r\nMovieFPS=x25\r\n"
        "MovieQuality=-99999999999\r\n");
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieOptions options = LoadMovieOptions(*doc);
    EXPECT_EQ(options.width, 720);
    EXPECT_EQ(options.height, 480);
    EXPECT_FLOAT_EQ(options.framesPerSecond, 29.97f);
    EXPECT_EQ(options.quality, 100);
    UseSettings(
        "MovieWid=2147483648\r\nMovieHgt=4294967776\r\nMovieFPS=1e999\r\n"
        "MovieQuality=75%\r\n");
    options = LoadMovieOptions(*doc);
    EXPECT_EQ(options.width, 720);
    EXPECT_EQ(options.height, 480);
    EXPECT_FLOAT_EQ(options.framesPerSecond, 29.97f);
    EXPECT_EQ(options.quality, 75);
    UseSettings("MovieFPS=25fps\r\n");
    EXPECT_FLOAT_EQ(LoadMovieOptions(*doc).framesPerSecond, 25.0f);
}

TEST_F(RenderDriver, FrameRateOf75IsWrittenAs60)
{
    UseSettings("MovieFPS=75\r\n");
    OnePicture(Rgb{10, 20, 30}, 20);
    EXPECT_EQ(LoadMovieOptions(*doc).framesPerSecond, 60.0f);
    MovieJob job = Job("fast.mov", 0, 3);
    job.options.framesPerSecond = 75.0f;
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(Setting("MovieFPS"), "60.00");
    // The movie itself runs at 60 frames a second: a time scale of 6000, 100 units a frame.
    int width = 0;
    int height = 0;
    ASSERT_TRUE(FFOpenMovieReader(dir.File("fast.mov").c_str(), &width, &height));
    EXPECT_EQ(FFReadTimeScale(), 6000);
    EXPECT_EQ(FFReadDuration(), 300);
    FFCloseMovieReader();
    MovieOptions negative;
    negative.framesPerSecond = -4.0f;
    EXPECT_EQ(NormaliseMovieOptions(negative).framesPerSecond, 0.0f);
}

TEST_F(RenderDriver, EscEndsTheRunAfterTheCurrentFrameWritesTheTailHoldAndSucceeds)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    progress.cancelAt = 4;  // frames 0..3 are written, the fifth is not rendered
    MovieJob job = Job("esc.mov", 0, 20);
    job.options.holds = 2;
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(MovieFrames("esc.mov"), 2 + 4 + 2);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Movie file(s) successfully made");
}

// Six frames of a flat picture into "split.mov" with the worker running and "Multiple
// Processors" as given; the progress notes which frames were to be split.
void RenderDriver::RenderSixFramesWithTheWorker(bool multipleProcessors)
{
    OnePicture(Rgb{10, 20, 30}, 30);
    ASSERT_TRUE(InitMPWithProcessors(2));
    gMultiProcess = multipleProcessors;
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("split.mov", &frame));
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 0, 6, 0, 100, progress));
    QTMovieWriteClose();
    CloseMP();
    EXPECT_EQ(MovieFrames("split.mov"), 6);
    Rgb colour = MovieColour("split.mov", 5);
    EXPECT_EQ(colour.red, 10);
    EXPECT_EQ(colour.green, 20);
    EXPECT_EQ(colour.blue, 30);
}

TEST_F(RenderDriver, FirstFrameIsSplitWhileTheWriterWaitsAndTheUsersChoiceIsKept)
{
    RenderSixFramesWithTheWorker(false);
    // Nothing is being written before the first frame: the writer's processor is free.
    ASSERT_EQ(progress.split.size(), 6u);
    EXPECT_TRUE(progress.split[0]);
    EXPECT_FALSE(gMultiProcess);
}

TEST_F(RenderDriver, MultipleProcessorsOnSplitsEveryFrame)
{
    RenderSixFramesWithTheWorker(true);
    EXPECT_EQ(progress.split, std::vector<bool>(6, true));
    EXPECT_TRUE(gMultiProcess);
    gMultiProcess = false;
}

TEST_F(RenderDriver, WriteFailingInTheMiddleEndsTheRunAndLeavesNoMovie)
{
    OnePicture(Rgb{10, 20, 30}, 60);
    MovieJob job = Job("full.mov", 0, 60);
    // Uncompressed 128 x 96 frames of 36 KB: the "disk" fills a few frames into the run.
    job.options.width = 128;
    job.options.height = 96;
    job.options.holds = 2;
    UseCodec("raw ");
    MovieJobResult result = MovieJobResult::kMade;
    {
        pxtest::FileSizeLimit limit(100 * 1024);
        result = MakeMovieFiles(*doc, job, progress);
    }
    EXPECT_EQ(result, MovieJobResult::kWriteFailed);
    EXPECT_NE(std::string(MovieLastError()), "");
    EXPECT_FALSE(pxtest::FileExists(dir.File("full.mov")));
    EXPECT_TRUE(TakeShownMessageBoxes().empty());
    // The head hold went in; the run stopped long before its end, having rendered no more
    // frames past the failed one than the queue holds; no tail hold followed.
    long runWritten = progress.written - 2;
    ASSERT_GE(runWritten, 0);
    EXPECT_LT(progress.frames.size(), 30u);
    EXPECT_LE(static_cast<long>(progress.frames.size()),
              runWritten + 1 + MovieFrameQueue::kBuffers +
                  static_cast<long>(MovieFrameQueue::kWaitingWrites));
    size_t holdTexts =
        static_cast<size_t>(std::count(progress.texts.begin(), progress.texts.end(),
                                       std::string("Rendering Hold... (Hit any key to cancel)")));
    EXPECT_EQ(holdTexts, 2u);
}

TEST_F(RenderDriver, JobWritesItsOpaqueFramesWithoutAlpha)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("rgb.mov", 0, 3);
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(dir.File("rgb.mov").c_str(), &facts));
    EXPECT_EQ(facts.codec, "png");
    EXPECT_FALSE(facts.alpha);
    EXPECT_EQ(facts.packets, 3);
    Rgb colour = MovieColour("rgb.mov", 1);
    EXPECT_EQ(colour.red, 10);
    EXPECT_EQ(colour.green, 20);
    EXPECT_EQ(colour.blue, 30);
}

TEST_F(RenderDriver, ReverseRunAppendsTheSameFramesBackwards)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("reverse.mov", 2, 6);
    job.options.reverse = true;
    job.options.holds = 1;
    EXPECT_EQ(MovieFrameCount(job.options), 2 * (4 + 2));
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(progress.frames, (std::vector<long>{2, 3, 4, 5, 6, 5, 4, 3}));
    EXPECT_EQ(MovieFrames("reverse.mov"), 12);
}

TEST_F(RenderDriver, DissolveRunsFromTheOutgoingPictureToTheIncomingOne)
{
    RedThenGreen(10.0f);
    MovieJob job = Job("dissolve.mov", 18, 32);
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    // Frames 18, 19: red alone. Frame 20 starts the dissolve with the outgoing picture whole.
    Rgb before = MovieColour("dissolve.mov", 1);
    EXPECT_EQ(before.red, 200);
    EXPECT_EQ(before.green, 0);
    Rgb start = MovieColour("dissolve.mov", 2);
    EXPECT_GE(start.red, 199);
    EXPECT_LE(start.green, 1);
    // Half way (frame 25): the cosine ease weighs both at about one half.
    Rgb middle = MovieColour("dissolve.mov", 7);
    EXPECT_NEAR(middle.red, 100, 2);
    EXPECT_NEAR(middle.green, 100, 2);
    // Later in the dissolve the incoming picture leads; after it (frame 30) green is alone.
    Rgb late = MovieColour("dissolve.mov", 10);
    EXPECT_GT(late.green, late.red);
    Rgb after = MovieColour("dissolve.mov", 12);
    EXPECT_EQ(after.red, 0);
    EXPECT_EQ(after.green, 200);
}

TEST_F(RenderDriver, SizeOfZeroReportsNotEnoughMemory)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("zero.mov", 0, 3);
    job.options.width = 0;
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kNoMemory);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Not Enough Memory to Make Movie");
    EXPECT_FALSE(pxtest::FileExists(dir.File("zero.mov")));
}

TEST_F(RenderDriver, MissingFolderReportsErrorOpeningMovieFile)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("no/such/folder/out.mov", 0, 3);
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kOpenFailed);
    std::vector<ShownMessageBox> boxes = TakeShownMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error Opening Movie File");
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
}

TEST_F(RenderDriver, JobStoresItsOptionsAndTheMovieType)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("kept.mov", 3, 6);
    job.options.holds = 30;
    job.options.quality = 55;
    job.options.reverse = true;
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(Setting("MovieWid"), "16");
    EXPECT_EQ(Setting("MovieHgt"), "12");
    EXPECT_EQ(Setting("MovieStart"), "00:00:03");
    EXPECT_EQ(Setting("MovieHold"), "00:01:00");
    EXPECT_EQ(Setting("MovieFPS"), "30.00");
    EXPECT_EQ(Setting("MovieQuality"), "55");
    EXPECT_EQ(Setting("MovieFields"), "");
    EXPECT_EQ(Setting("MovieReverse"), "1");
    EXPECT_EQ(Setting("MovieType"), "1");
}

TEST_F(RenderDriver, JobWithoutStoringLeavesTheSettingsAlone)
{
    OnePicture(Rgb{10, 20, 30}, 20);
    MovieJob job = Job("quiet.mov", 0, 2);
    job.storeSettings = false;
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(Setting("MovieWid"), "?");
    EXPECT_EQ(Setting("MovieType"), "?");
}

TEST_F(RenderDriver, MovieTypeComesFromTheFileName)
{
    EXPECT_EQ(MovieTypeOf("a.avi"), 0);
    EXPECT_EQ(MovieTypeOf("a.mov"), 1);
    EXPECT_EQ(MovieTypeOf("a.dps"), 2);
    EXPECT_EQ(MovieTypeOf("a.rtv"), 3);
    EXPECT_EQ(MovieTypeOf("a.mkv"), 0);
}

TEST_F(RenderDriver, ShowEndIsTheLastPicturesStartPlusItsLastKey)
{
    RedThenGreen(0.0f);
    EXPECT_EQ(ShowEnd(*doc), 40);
    EXPECT_EQ(LoadMovieOptions(*doc).end, 40);
}

TEST_F(RenderDriver, BatchMoviesAreNamedAfterTheShowWithAnAppendedB)
{
    OnePicture(Rgb{10, 20, 30}, 4);
    FSpec show = PathSpec(dir.File("first.plx"));
    ASSERT_TRUE(doc->WriteShowFile(&show));
    FSpec missing = PathSpec(dir.File("missing.plx"));
    MovieJob job = Job("ignored.mov", 0, 0);
    job.shows = {missing, show};
    EXPECT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_TRUE(pxtest::FileExists(dir.File("firstB.mov")));
    EXPECT_FALSE(pxtest::FileExists(dir.File("ignored.mov")));
    EXPECT_EQ(MovieFrames("firstB.mov"), 4);  // the end is the end of that show
}

// ---- Lossless movies show every pixel ----

class RenderDriverLossless : public RenderDriver, public testing::WithParamInterface<const char*> {
protected:
    // The smallest alpha of every frame of the movie, as the reader gives it (255 where the
    // movie has no alpha).
    int SmallestAlpha(const std::string& name, long frames)
    {
        FSpec movie = PathSpec(dir.File(name));
        CDIB frame(1, 1, 32);
        int smallest = 256;
        if (!QTMovieReadOpen(&movie, &frame))
            return -1;
        for (long index = 0; index < frames; ++index) {
            if (!QTMovieReadFrame(index * 100, &frame))
                return -1;
            for (int row = 0; row < frame.GetHgt(); ++row)
                for (long x = 0; x < frame.GetWid(); ++x)
                    smallest = std::min<int>(smallest, frame.GetBitsAdd(row)[x * 4 + 3]);
        }
        QTMovieReadClose();
        return smallest;
    }

    // One 32-bit picture whose column x has alpha x × alphaStep, kept as it is, and a camera
    // that in three frames widens to see far past its edges.
    void SeePastAThirtyTwoBitPicture(int alphaStep)
    {
        CDIB picture(32, 24, 32);
        for (int row = 0; row < 24; ++row)
            for (long x = 0; x < 32; ++x) {
                unsigned char* pixel = picture.GetBitsAdd(row) + x * 4;
                pixel[0] = 40;
                pixel[1] = 50;
                pixel[2] = 60;
                pixel[3] = static_cast<unsigned char>(x * alphaStep);
            }
        FSpec spec = PathSpec(dir.File("alpha.bmp"));
        ASSERT_TRUE(picture.Save(&spec, 0));
        doc->ignoreAlpha = false;
        doc->LoadPicture(&spec, 0, 0);
        KeyStruct last = doc->keys[0][0];
        last.Frame = 3;
        last.Width *= 3.0f;
        doc->SetKey(1, last, 0);
    }
};

TEST_P(RenderDriverLossless, DraftRotatedCameraOnATwentyFourBitPictureIsOpaque)
{
    // The nearest-pixel rotating filter leaves the frame's alpha alone for a 24-bit picture.
    UseCodec(GetParam());
    OnePicture(Rgb{10, 20, 30}, 6);
    doc->draftRender = true;
    doc->keys[0][0].Rotation = 30.0f;
    doc->keys[0][1].Rotation = 60.0f;
    FSpec spec = PathSpec(dir.File("one.bmp"));
    doc->LoadPicture(&spec, 0, 0);  // takes up the rotation
    MovieJob job = Job("draft.mov", 0, 6);
    ASSERT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(SmallestAlpha("draft.mov", 6), 255);
}

TEST_P(RenderDriverLossless, CameraPastTheEdgeOfAThirtyTwoBitPictureIsOpaque)
{
    // Outside a 32-bit picture the filters write alpha 0.
    UseCodec(GetParam());
    SeePastAThirtyTwoBitPicture(8);
    ASSERT_EQ(doc->picCount, 1);
    MovieJob job = Job("edge.mov", 0, 3);
    ASSERT_EQ(MakeMovieFiles(*doc, job, progress), MovieJobResult::kMade);
    EXPECT_EQ(SmallestAlpha("edge.mov", 3), 255);
}

TEST_P(RenderDriverLossless, FramesAreMadeOpaqueForAMovieThatStoresAlpha)
{
    // A movie opened for frames that may carry alpha (not the job's opaque ones) stores it; the
    // run still writes no transparent pixel, not even where the camera sees past the picture.
    UseCodec(GetParam());
    SeePastAThirtyTwoBitPicture(0);  // wholly transparent
    ASSERT_EQ(doc->picCount, 1);
    CDIB frame(kWidth, kHeight, 32);
    ASSERT_TRUE(OpenMovie("kept.mov", &frame));
    ASSERT_TRUE(QTMovieStoresAlpha());
    EXPECT_TRUE(MakeMovie(*doc, &frame, 0, 0, 3, 0, 100, progress));
    EXPECT_TRUE(QTMovieWriteClose());
    EXPECT_EQ(SmallestAlpha("kept.mov", 3), 255);
}

INSTANTIATE_TEST_SUITE_P(Codecs, RenderDriverLossless, testing::Values("png ", "rle ", "raw "),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             return name.substr(0, 3);
                         });

}  // namespace
