#include "app/cli/stop_signals.h"

#include <atomic>
#include <csignal>

namespace {

std::atomic<int> gStopSignal{0};
std::atomic<long> gStopAfter{-1};

extern "C" void OnStopSignal(int signal)
{
    int none = 0;
    gStopSignal.compare_exchange_strong(none, signal);
    // The next one of the same kind is not asked politely.
    std::signal(signal, SIG_DFL);
}

}  // namespace

void WatchForStopSignals()
{
    std::signal(SIGINT, OnStopSignal);
    std::signal(SIGTERM, OnStopSignal);
    std::signal(SIGHUP, OnStopSignal);
}

int StopSignal() { return gStopSignal.load(); }

int ExitCodeOfStop(int signal) { return 128 + signal; }

void SetStopSignal(int signal)
{
    gStopSignal.store(signal);
    gStopAfter.store(-1);
}

void StopAfterFrames(long frames) { gStopAfter.store(frames); }

void NoteFrameWritten(long framesSoFar)
{
    long after = gStopAfter.load();
    if (after >= 0 && framesSoFar >= after) {
        int none = 0;
        gStopSignal.compare_exchange_strong(none, SIGINT);
    }
}
