#include "app/cli/progress_report.h"

#include <unistd.h>
#include <algorithm>

#include "app/cli/stop_signals.h"

ProgressReport::ProgressReport(std::FILE* err, ProgressStyle style, bool quiet, long total)
    : err_(err), style_(style), quiet_(quiet), total_(std::max(total, 1L)), started_(Clock::now()),
      lastShown_(started_)
{
    if (style_ == ProgressStyle::kAuto)
        style_ = isatty(fileno(err)) != 0 ? ProgressStyle::kBar : ProgressStyle::kLines;
}

bool ProgressReport::CancelRequested() { return StopSignal() != 0; }

void ProgressReport::FrameWritten()
{
    ++written_;
    NoteFrameWritten(written_);
    Clock::time_point now = Clock::now();
    auto every = style_ == ProgressStyle::kBar ? std::chrono::milliseconds(200)
                                               : std::chrono::milliseconds(1000);
    if (now - lastShown_ >= every || written_ == total_) {
        lastShown_ = now;
        Show(now);
    }
}

void ProgressReport::Finish()
{
    if (written_ != shown_ && written_ > 0)
        Show(Clock::now());
    if (!quiet_ && style_ == ProgressStyle::kBar && written_ > 0)
        std::fputc('\n', err_);
}

void ProgressReport::Show(Clock::time_point now)
{
    shown_ = written_;
    if (quiet_)
        return;
    double seconds = std::chrono::duration<double>(now - started_).count();
    double rate = seconds > 0.0 ? written_ / seconds : 0.0;
    long left = rate > 0.0 ? static_cast<long>((total_ - written_) / rate + 0.5) : 0;
    switch (style_) {
    case ProgressStyle::kJson:
        std::fprintf(err_, "{\"frame\":%ld,\"total\":%ld,\"fps\":%.2f,\"eta_s\":%ld}\n", written_,
                     total_, rate, left);
        break;
    case ProgressStyle::kBar:
    case ProgressStyle::kLines:
    case ProgressStyle::kAuto: {
        bool bar = style_ == ProgressStyle::kBar;
        std::fprintf(err_, "%sframe %ld of %ld, %.1f fps, Time to go: %02ld:%02ld%s",
                     bar ? "\r" : "", written_, total_, rate, left / 60, left % 60,
                     bar ? "  " : "\n");
        break;
    }
    }
    std::fflush(err_);
}
