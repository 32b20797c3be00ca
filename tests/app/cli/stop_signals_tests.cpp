// Stop signals: the first asks for a stop and names itself; the exit code is 128 + its number.

#include <gtest/gtest.h>

#include <csignal>

#include "app/cli/stop_signals.h"

namespace {

class StopSignals : public testing::Test {
protected:
    void SetUp() override { SetStopSignal(0); }
    void TearDown() override
    {
        SetStopSignal(0);
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        std::signal(SIGHUP, SIG_DFL);
    }
};

TEST_F(StopSignals, EachSignalAsksForAStopAndTheFirstOneCounts)
{
    WatchForStopSignals();
    EXPECT_EQ(StopSignal(), 0);
    std::raise(SIGTERM);
    EXPECT_EQ(StopSignal(), SIGTERM);
    WatchForStopSignals();
    std::raise(SIGHUP);
    EXPECT_EQ(StopSignal(), SIGTERM) << "the first signal names the stop";
    SetStopSignal(0);
    std::raise(SIGINT);
    EXPECT_EQ(StopSignal(), SIGINT);
}

TEST_F(StopSignals, ExitCodesAre128PlusTheSignal)
{
    EXPECT_EQ(ExitCodeOfStop(SIGHUP), 129);
    EXPECT_EQ(ExitCodeOfStop(SIGINT), 130);
    EXPECT_EQ(ExitCodeOfStop(SIGTERM), 143);
}

TEST_F(StopSignals, StopAfterFramesActsAsCtrlC)
{
    StopAfterFrames(3);
    NoteFrameWritten(2);
    EXPECT_EQ(StopSignal(), 0);
    NoteFrameWritten(3);
    EXPECT_EQ(StopSignal(), SIGINT);
}

}  // namespace
