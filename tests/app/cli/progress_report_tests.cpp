// Progress on stderr: lines, the updating bar, JSON for farm managers, nothing when quiet.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "app/cli/progress_report.h"
#include "app/cli/stop_signals.h"

namespace {

// What a report of `frames` frames out of `total` writes.
std::string Report(ProgressStyle style, bool quiet, long frames, long total)
{
    std::FILE* err = std::tmpfile();
    {
        ProgressReport report(err, style, quiet, total);
        for (long i = 0; i < frames; ++i)
            report.FrameWritten();
        report.Finish();
    }
    std::fflush(err);
    std::rewind(err);
    std::string said;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, err) != nullptr)
        said += buffer;
    std::fclose(err);
    return said;
}

TEST(ProgressReport, LinesEndWithTheLastFrame)
{
    std::string said = Report(ProgressStyle::kLines, false, 4, 4);
    std::string last = said.substr(said.rfind('\n', said.size() - 2) == std::string::npos
                                       ? 0
                                       : said.rfind('\n', said.size() - 2) + 1);
    EXPECT_EQ(last.rfind("frame 4 of 4, ", 0), 0u) << said;
    EXPECT_NE(said.find("Time to go: 00:00\n"), std::string::npos) << said;
    EXPECT_EQ(said.find('\r'), std::string::npos) << said;
}

TEST(ProgressReport, BarRewritesOneLineAndEndsIt)
{
    std::string said = Report(ProgressStyle::kBar, false, 3, 3);
    EXPECT_EQ(said.front(), '\r') << said;
    EXPECT_EQ(said.back(), '\n') << said;
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
}

TEST(ProgressReport, JsonIsOneObjectALineWithTheStoppedCount)
{
    // Stopped after 2 of 5 frames: the last object says where the run ended.
    std::string said = Report(ProgressStyle::kJson, false, 2, 5);
    EXPECT_NE(said.find("{\"frame\":2,\"total\":5,\"fps\":"), std::string::npos) << said;
    EXPECT_EQ(said.back(), '\n');
    EXPECT_EQ(said.find("frame 2"), std::string::npos) << said;
}

TEST(ProgressReport, QuietSaysNothing)
{
    EXPECT_EQ(Report(ProgressStyle::kLines, true, 3, 3), "");
    EXPECT_EQ(Report(ProgressStyle::kJson, true, 3, 3), "");
}

TEST(ProgressReport, AStopSignalIsTheCancel)
{
    std::FILE* err = std::tmpfile();
    ProgressReport report(err, ProgressStyle::kLines, true, 10);
    SetStopSignal(0);
    EXPECT_FALSE(report.CancelRequested());
    SetStopSignal(15);
    EXPECT_TRUE(report.CancelRequested());
    SetStopSignal(0);
    std::fclose(err);
}

}  // namespace
