// The render driver's frame queue: buffers handed out round, one writing thread, and waits that
// keep the progress on the calling thread.

#include "output/frame_queue.h"

#include <system_error>
#include <utility>

MovieFrameQueue::MovieFrameQueue(CDIB* frame, int buffers, Writer write)
    : write_(std::move(write)), frame_(frame), last_(frame)
{
    buffers_.push_back(Buffer{frame, 0});
    if (buffers < 2)
        return;
    for (int i = 1; i < buffers; ++i) {
        auto extra = std::make_unique<CDIB>(frame->GetWid(), frame->GetHgt(), frame->GetBitCount());
        // Fewer buffers when memory is short: two still overlap, one takes turns.
        if (extra->GetBitCount() != frame->GetBitCount())
            break;
        buffers_.push_back(Buffer{extra.get(), 0});
        owned_.push_back(std::move(extra));
    }
    if (buffers_.size() < 2)
        return;
    // A writer that has not started yet has nothing to write either.
    starved_ = true;
    try {
        writer_ = std::thread([this] { WriteQueued(); });
    } catch (const std::system_error&) {
        // No thread to be had: every frame is written as it is queued.
    }
}

MovieFrameQueue::~MovieFrameQueue()
{
    if (!writer_.joinable())
        return;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    writer_.join();
}

void MovieFrameQueue::WriteQueued()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        if (waiting_.empty())
            starved_ = true;
        changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        size_t buffer = waiting_.front();
        bool skip = failed_;
        lock.unlock();
        bool written = !skip && write_(buffers_[buffer].image);
        lock.lock();
        waiting_.pop_front();
        --buffers_[buffer].queued;
        if (written)
            ++written_;
        else
            failed_ = true;
        changed_.notify_all();
    }
}

void MovieFrameQueue::WaitFor(const std::function<bool()>& ready, RenderProgress& progress)
{
    for (;;) {
        long newlyWritten = 0;
        bool done = false;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            changed_.wait(lock, [&] { return ready() || written_ > reported_; });
            newlyWritten = written_ - reported_;
            reported_ = written_;
            done = ready();
        }
        for (; newlyWritten > 0; --newlyWritten)
            progress.FrameWritten();
        if (done)
            return;
    }
}

CDIB* MovieFrameQueue::Next(RenderProgress& progress)
{
    size_t found = 0;
    WaitFor(
        [&] {
            for (size_t i = 0; i < buffers_.size(); ++i) {
                size_t each = (nextBuffer_ + i) % buffers_.size();
                if (buffers_[each].queued == 0) {
                    found = each;
                    return true;
                }
            }
            return false;
        },
        progress);
    nextBuffer_ = (found + 1) % buffers_.size();
    return buffers_[found].image;
}

bool MovieFrameQueue::Queue(CDIB* frame, RenderProgress& progress)
{
    size_t buffer = 0;
    while (buffer < buffers_.size() && buffers_[buffer].image != frame)
        ++buffer;
    if (buffer == buffers_.size())
        return false;
    last_ = frame;
    if (!writer_.joinable()) {
        if (failed_ || !write_(frame)) {
            failed_ = true;
            return false;
        }
        progress.FrameWritten();
        return true;
    }
    WaitFor([this] { return failed_ || waiting_.size() < kWaitingWrites; }, progress);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (failed_)
            return false;
        waiting_.push_back(buffer);
        ++buffers_[buffer].queued;
    }
    changed_.notify_all();
    return true;
}

bool MovieFrameQueue::Failed()
{
    std::lock_guard<std::mutex> lock(mutex_);
    return failed_;
}

bool MovieFrameQueue::WriterWaitedForFrames()
{
    if (!writer_.joinable())
        return false;
    std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(starved_, false);
}

bool MovieFrameQueue::Finish(RenderProgress& progress)
{
    if (writer_.joinable())
        WaitFor([this] { return waiting_.empty(); }, progress);
    if (last_ != frame_) {
        // Every write is done: the buffers may trade places.
        frame_->Swap(*last_);
        last_ = frame_;
    }
    return !Failed();
}
