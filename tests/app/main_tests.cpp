// The program as a user, a scheduler or a render farm runs it: exit codes and one-line messages,
// stop signals in the middle of a render, a killed render, and a show rendered in chunk jobs
// joined by FFmpeg's concat demuxer.

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "app/cli_shows.h"
#include "image/cdib.h"
#include "output/ffmpeg_movie.h"
#include "output/movie.h"
#include "platform/file/paths.h"
#include "support/movie_frames.h"
#include "support/temp_dir.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string Demo() { return PX_SOURCE_DIR "/resources/demo/demo.plx"; }

// The program started with `arguments`, its stdout and stderr into files in `dir`.
class Program {
public:
    Program(const pxtest::TempDir& dir, std::vector<std::string> arguments)
        : out_(dir.File("stdout.txt")), err_(dir.File("stderr.txt"))
    {
        arguments.insert(arguments.begin(), PX_PROGRAM);
        pid_ = fork();
        if (pid_ == 0) {
            freopen(out_.c_str(), "w", stdout);
            freopen(err_.c_str(), "w", stderr);
            std::vector<char*> argv;
            for (std::string& argument : arguments)
                argv.push_back(argument.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
    }
    ~Program()
    {
        if (pid_ > 0 && !finished_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Signal(int signal) { kill(pid_, signal); }

    // The exit code (128 + the signal for a program killed by one); -1 after `seconds`.
    int Wait(int seconds = 120)
    {
        Clock::time_point until = Clock::now() + std::chrono::seconds(seconds);
        while (Clock::now() < until) {
            int status = 0;
            if (waitpid(pid_, &status, WNOHANG) == pid_) {
                finished_ = true;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return -1;
    }

    std::string Said() const { return pxtest::ReadText(err_); }
    std::string Printed() const { return pxtest::ReadText(out_); }

private:
    std::string out_;
    std::string err_;
    pid_t pid_ = -1;
    bool finished_ = false;
};

int RunProgram(const pxtest::TempDir& dir, std::vector<std::string> arguments,
               std::string* said = nullptr)
{
    Program program(dir, std::move(arguments));
    int code = program.Wait();
    if (said != nullptr)
        *said = program.Said();
    return code;
}

// The temporary movie beside `target`, once the render has written `bytes` into it.
bool WaitForPartialMovie(const std::string& folder, uintmax_t bytes, int seconds = 60)
{
    Clock::time_point until = Clock::now() + std::chrono::seconds(seconds);
    while (Clock::now() < until) {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
            std::string name = entry.path().filename().string();
            if (name.find(".partial-") != std::string::npos && entry.file_size(error) >= bytes)
                return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

int PartialFiles(const std::string& folder)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        count += entry.path().filename().string().find(".partial-") != std::string::npos ? 1 : 0;
    return count;
}

bool HasFFmpeg() { return std::system("ffmpeg -version > /dev/null 2>&1") == 0; }

// ---- Exit codes -----------------------------------------------------------------------------

TEST(Program, HelpAndVersionExitZero)
{
    pxtest::TempDir dir;
    Program help(dir, {"--help"});
    ASSERT_EQ(help.Wait(), 0);
    EXPECT_NE(help.Printed().find("Exit codes:"), std::string::npos);
    Program version(dir, {"--version"});
    ASSERT_EQ(version.Wait(), 0);
    EXPECT_EQ(version.Printed().rfind("parallaxotron ", 0), 0u);
}

TEST(Program, UsageErrorsAreOneLineAndExitTwo)
{
    pxtest::TempDir dir;
    std::string said;
    EXPECT_EQ(
        RunProgram(dir, {"--render", Demo(), "--still", "abc", "-o", dir.File("f.tga")}, &said), 2);
    EXPECT_EQ(
        said,
        "parallaxotron: --still needs a frame number (digits only, e.g. 150) or a timecode with "
        "colons (e.g. 00:00:05:00), not 'abc' (see parallaxotron --help)\n");
    EXPECT_EQ(
        RunProgram(dir, {"--render", Demo(), "--start", "99:99:99:99", "-o", dir.File("f.mov")},
                   &said),
        2);
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_NE(said.find("not '99:99:99:99'"), std::string::npos) << said;
    EXPECT_EQ(
        RunProgram(dir,
                   {"--render", Demo(), "--start", "100", "--end", "100", "-o", dir.File("f.mov")},
                   &said),
        2);
    EXPECT_NE(said.find("is an empty range"), std::string::npos) << said;
    EXPECT_FALSE(pxtest::FileExists(dir.File("f.mov")));
    EXPECT_FALSE(pxtest::FileExists(dir.File("f.tga")));
}

// ---- Stop signals ---------------------------------------------------------------------------

struct StopCase {
    int signal;
    int code;
    const char* name;
};

TEST(Program, StopSignalsCloseAPlayableMovieOfTheFramesMade)
{
    for (StopCase stop : {StopCase{SIGTERM, 143, "SIGTERM"}, StopCase{SIGINT, 130, "SIGINT"},
                          StopCase{SIGHUP, 129, "SIGHUP"}}) {
        pxtest::TempDir dir;
        std::string out = dir.File("stopped.mov");
        Program render(dir, {"--render", Demo(), "-o", out, "--size", "160x120", "--codec", "png",
                             "--progress", "lines"});
        ASSERT_TRUE(WaitForPartialMovie(dir.Path(), 20000)) << stop.name;
        render.Signal(stop.signal);
        ASSERT_EQ(render.Wait(), stop.code) << stop.name << ": " << render.Said();
        std::string said = render.Said();
        EXPECT_NE(said.find(std::string("Stopped by ") + stop.name + ": " + out + " holds the "),
                  std::string::npos)
            << said;
        long frames = pxtest::MovieFrames(out);
        EXPECT_GT(frames, 0) << stop.name;
        EXPECT_LT(frames, 1190) << stop.name;
        EXPECT_NE(said.find("holds the " + std::to_string(frames) + " frames made so far"),
                  std::string::npos)
            << said;
        EXPECT_EQ(PartialFiles(dir.Path()), 0) << stop.name;
    }
}

TEST(Program, KilledRenderLeavesThePreviousMovieIntact)
{
    pxtest::TempDir dir;
    std::string out = dir.File("movie.mov");
    ASSERT_EQ(RunProgram(dir, {"--render", Demo(), "-o", out, "--size", "64x48", "--end", "3",
                               "--codec", "png"}),
              0);
    std::vector<unsigned char> previous = pxtest::ReadBytes(out);
    Program render(dir, {"--render", Demo(), "-o", out, "--size", "160x120", "--codec", "png"});
    ASSERT_TRUE(WaitForPartialMovie(dir.Path(), 20000));
    render.Signal(SIGKILL);
    ASSERT_EQ(render.Wait(), 128 + SIGKILL);
    EXPECT_EQ(pxtest::ReadBytes(out), previous);
    EXPECT_EQ(pxtest::MovieFrames(out), 3);
    EXPECT_LE(PartialFiles(dir.Path()), 1) << "at most the killed render's temporary file";
}

TEST(Program, TermWhileMakingAFirstMovieLeavesAPlayableOne)
{
    pxtest::TempDir dir;
    std::string out = dir.File("first.mp4");
    Program render(dir, {"--render", Demo(), "-o", out, "--size", "320x240", "--progress", "json"});
    // H.264 keeps frames in its look-ahead: wait until the render says frames are made.
    Clock::time_point until = Clock::now() + std::chrono::seconds(60);
    while (render.Said().find("{\"frame\":") == std::string::npos && Clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    render.Signal(SIGTERM);
    ASSERT_EQ(render.Wait(), 143) << render.Said();
    EXPECT_GT(pxtest::MovieFrames(out), 0);
}

// ---- Chunks join ----------------------------------------------------------------------------

// Renders the show as one job and as three chunk jobs in parallel, joins the chunks with FFmpeg's
// concat demuxer (stream copy); answers the whole movie's and the joined movie's paths.
bool RenderWholeAndChunks(const pxtest::TempDir& dir, const std::string& codec,
                          const std::string& extension, std::string* whole, std::string* joined)
{
    std::string show = dir.File("dissolve.plx");
    if (!pxtest::WriteTwoPictureShow(dir.Path(), "dissolve.plx", 30, 12.0f))
        return false;
    *whole = dir.File("whole" + extension);
    *joined = dir.File("joined" + extension);
    std::string common = " --size 64x48 --codec " + codec + " --quiet";
    if (RunProgram(dir, {"--render", show, "-o", *whole, "--size", "64x48", "--codec", codec,
                         "--quiet"}) != 0)
        return false;
    // Frames 24..36 hold the dissolve: the chunk border at 30 falls inside it.
    std::string jobs =
        "printf '0 12\\n12 30\\n30 60\\n' | xargs -P 3 -L 1 sh -c '\"$0\" --render " + show +
        " -o " + dir.Path() + "/chunk_$1" + extension + " --start $1 --end $2" + common + "' " +
        PX_PROGRAM;
    if (std::system(jobs.c_str()) != 0)
        return false;
    std::string list = "file 'chunk_0" + extension + "'\nfile 'chunk_12" + extension +
                       "'\nfile 'chunk_30" + extension + "'\n";
    if (!pxtest::WriteText(dir.File("chunks.txt"), list))
        return false;
    std::string join = "ffmpeg -v error -y -f concat -safe 0 -i " + dir.File("chunks.txt") +
                       " -c copy -video_track_timescale 2997 -movie_timescale 2997 " + *joined;
    return std::system(join.c_str()) == 0;
}

std::vector<unsigned char> FrameBytes(const std::string& path, long frame)
{
    FSpec movie = PathFSpec(path.c_str());
    CDIB picture(1, 1, 32);
    std::vector<unsigned char> bytes;
    if (QTMovieReadOpen(&movie, &picture) && QTMovieReadFrame(frame * 100, &picture)) {
        for (int row = 0; row < picture.GetHgt(); ++row) {
            const unsigned char* pixels = picture.GetBitsAdd(row);
            bytes.insert(bytes.end(), pixels, pixels + 4L * picture.GetWid());
        }
    }
    QTMovieReadClose();
    return bytes;
}

TEST(Program, ChunkJobsJoinToTheFramesOfOneRender)
{
    if (!HasFFmpeg())
        GTEST_SKIP() << "the ffmpeg program is not installed (tools/setup installs it)";
    pxtest::TempDir dir;
    std::string whole;
    std::string joined;
    ASSERT_TRUE(RenderWholeAndChunks(dir, "png", ".mov", &whole, &joined));
    ASSERT_EQ(pxtest::MovieFrames(whole), 60);
    ASSERT_EQ(pxtest::MovieFrames(joined), 60);
    std::string differing;
    for (long frame = 0; frame < 60; ++frame) {
        std::vector<unsigned char> one = FrameBytes(whole, frame);
        ASSERT_FALSE(one.empty()) << frame;
        if (FrameBytes(joined, frame) != one)
            differing += " " + std::to_string(frame);
    }
    EXPECT_EQ(differing, "") << "frames that differ";
}

TEST(Program, H264ChunkJobsJoinWithTheSameFrameCountAndDuration)
{
    if (!HasFFmpeg())
        GTEST_SKIP() << "the ffmpeg program is not installed (tools/setup installs it)";
    pxtest::TempDir dir;
    std::string whole;
    std::string joined;
    ASSERT_TRUE(RenderWholeAndChunks(dir, "avc1", ".mp4", &whole, &joined));
    FFMovieFacts one;
    FFMovieFacts chunks;
    ASSERT_TRUE(FFProbeMovieFile(whole.c_str(), &one));
    ASSERT_TRUE(FFProbeMovieFile(joined.c_str(), &chunks));
    EXPECT_EQ(one.packets, 60);
    EXPECT_EQ(chunks.packets, 60);
    double oneSeconds = double(one.duration) * one.timeBaseNum / one.timeBaseDen;
    double chunkSeconds = double(chunks.duration) * chunks.timeBaseNum / chunks.timeBaseDen;
    EXPECT_NEAR(chunkSeconds, oneSeconds, 0.0005);
    EXPECT_NEAR(oneSeconds, 60 / 29.97, 0.0005);
    EXPECT_EQ(pxtest::MovieFrames(joined), 60);
}

}  // namespace
