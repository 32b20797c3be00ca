#pragma once
// What the command line shows while frames are made, on stderr: one updating line on a terminal
// ("frame n of N, f fps, Time to go: mm:ss"), a line a second otherwise, or one JSON object a
// line for render farm managers ({"frame":n,"total":N,"fps":f,"eta_s":s}). A stop signal is the
// render's cancel.

#include <chrono>
#include <cstdio>

#include "app/cli/command_line.h"
#include "output/render_driver.h"

class ProgressReport : public RenderProgress {
public:
    // kAuto becomes kBar on a terminal, kLines otherwise; `quiet` shows nothing.
    ProgressReport(std::FILE* err, ProgressStyle style, bool quiet, long total);

    void Progress(double, const char*) override {}
    void ShowFrame(long) override {}
    bool CancelRequested() override;
    void FrameWritten() override;
    // Ends the updating line, after a last report of where the run stopped.
    void Finish();

    long Written() const { return written_; }

private:
    using Clock = std::chrono::steady_clock;
    void Show(Clock::time_point now);

    std::FILE* err_;
    ProgressStyle style_;
    bool quiet_;
    long total_;
    Clock::time_point started_;
    Clock::time_point lastShown_;
    long written_ = 0;
    long shown_ = -1;  // the count last shown
};
