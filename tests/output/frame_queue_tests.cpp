// The render driver's frame queue: writes keep their order and run on a thread of their own, a
// buffer is not handed out while a write still reads it, a failed write stops everything after
// it, and the progress hears of every written frame on the calling thread.

#include "output/frame_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// Counts the frames written, and notes the thread it is told on.
class CountingProgress : public RenderProgress {
public:
    void Progress(double, const char*) override {}
    void ShowFrame(long) override {}
    void FrameWritten() override
    {
        ++written;
        if (std::this_thread::get_id() != caller)
            wrongThread = true;
    }
    bool CancelRequested() override { return false; }

    std::thread::id caller = std::this_thread::get_id();
    long written = 0;
    bool wrongThread = false;
};

// Every byte of the frame's first row set to `value`.
void Mark(CDIB* frame, unsigned char value)
{
    unsigned char* row = frame->GetBitsAdd(0);
    for (int x = 0; x < 4 * frame->GetWid(); ++x)
        row[x] = value;
}

// A stand-in for the movie: notes the mark of every frame it is given, checks that nobody
// changes the frame while it is being "compressed" (slowly), and fails the write numbered
// `failAt` (from 0) when that is not -1.
class FakeMovie {
public:
    explicit FakeMovie(long failAt = -1) : failAt_(failAt) {}

    MovieFrameQueue::Writer Writer()
    {
        return [this](CDIB* frame) { return Write(frame); };
    }

    bool Write(CDIB* frame)
    {
        if (std::this_thread::get_id() == caller_)
            onCaller = true;
        unsigned char mark = frame->GetBitsAdd(0)[0];
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        const unsigned char* row = frame->GetBitsAdd(0);
        for (int x = 0; x < 4 * frame->GetWid(); ++x) {
            if (row[x] != mark)
                changedWhileWritten = true;
        }
        std::lock_guard<std::mutex> lock(mutex_);
        if (static_cast<long>(calls_++) == failAt_)
            return false;
        marks.push_back(mark);
        return true;
    }

    std::vector<unsigned char> Marks()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return marks;
    }

    std::atomic<bool> changedWhileWritten{false};
    std::atomic<bool> onCaller{false};
    std::vector<unsigned char> marks;

private:
    std::thread::id caller_ = std::this_thread::get_id();
    long failAt_;
    size_t calls_ = 0;
    std::mutex mutex_;
};

TEST(MovieFrameQueue, WritesKeepTheirOrderOnAThreadOfTheirOwn)
{
    CDIB frame(8, 4, 32);
    FakeMovie movie;
    CountingProgress progress;
    {
        MovieFrameQueue queue(&frame, MovieFrameQueue::kBuffers, movie.Writer());
        for (unsigned char i = 1; i <= 20; ++i) {
            CDIB* next = queue.Next(progress);
            Mark(next, i);
            ASSERT_TRUE(queue.Queue(next, progress));
        }
        EXPECT_TRUE(queue.Finish(progress));
    }
    std::vector<unsigned char> expected;
    for (unsigned char i = 1; i <= 20; ++i)
        expected.push_back(i);
    EXPECT_EQ(movie.Marks(), expected);
    EXPECT_FALSE(movie.changedWhileWritten);
    EXPECT_FALSE(movie.onCaller);
    EXPECT_EQ(progress.written, 20);
    EXPECT_FALSE(progress.wrongThread);
    // The caller's frame holds the last frame queued.
    EXPECT_EQ(frame.GetBitsAdd(0)[0], 20);
}

TEST(MovieFrameQueue, LastBufferQueuedAgainIsWrittenAgainInItsPlace)
{
    CDIB frame(8, 4, 32);
    FakeMovie movie;
    CountingProgress progress;
    MovieFrameQueue queue(&frame, MovieFrameQueue::kBuffers, movie.Writer());
    CDIB* first = queue.Next(progress);
    Mark(first, 7);
    for (int hold = 0; hold < 5; ++hold)
        ASSERT_TRUE(queue.Queue(first, progress));
    CDIB* second = queue.Next(progress);
    EXPECT_NE(second, first);
    Mark(second, 8);
    ASSERT_TRUE(queue.Queue(second, progress));
    for (int hold = 0; hold < 2; ++hold)
        ASSERT_TRUE(queue.Queue(queue.Last(), progress));
    EXPECT_TRUE(queue.Finish(progress));
    EXPECT_EQ(movie.Marks(), (std::vector<unsigned char>{7, 7, 7, 7, 7, 8, 8, 8}));
    EXPECT_EQ(progress.written, 8);
}

TEST(MovieFrameQueue, FailedWriteInTheMiddleStopsEverythingAfterIt)
{
    CDIB frame(8, 4, 32);
    FakeMovie movie(3);  // the fourth write fails
    CountingProgress progress;
    MovieFrameQueue queue(&frame, MovieFrameQueue::kBuffers, movie.Writer());
    int queued = 0;
    for (unsigned char i = 1; i <= 20; ++i) {
        if (queue.Failed())
            break;
        CDIB* next = queue.Next(progress);
        Mark(next, i);
        if (!queue.Queue(next, progress))
            break;
        ++queued;
    }
    EXPECT_FALSE(queue.Finish(progress));
    EXPECT_TRUE(queue.Failed());
    EXPECT_FALSE(queue.Queue(queue.Last(), progress));
    // The frames before the failure are in, none after it, and the run noticed within the
    // frames the queue holds.
    EXPECT_EQ(movie.Marks(), (std::vector<unsigned char>{1, 2, 3}));
    EXPECT_EQ(progress.written, 3);
    EXPECT_LE(queued, 4 + static_cast<int>(MovieFrameQueue::kWaitingWrites) + 1);
}

TEST(MovieFrameQueue, OneBufferRendersAndWritesInTurnOnTheCallingThread)
{
    CDIB frame(8, 4, 32);
    FakeMovie movie;
    CountingProgress progress;
    MovieFrameQueue queue(&frame, 1, movie.Writer());
    for (unsigned char i = 1; i <= 3; ++i) {
        CDIB* next = queue.Next(progress);
        EXPECT_EQ(next, &frame);
        Mark(next, i);
        ASSERT_TRUE(queue.Queue(next, progress));
        // Written before Queue returns.
        EXPECT_EQ(progress.written, i);
    }
    EXPECT_TRUE(queue.Finish(progress));
    EXPECT_TRUE(movie.onCaller);
    EXPECT_EQ(movie.Marks(), (std::vector<unsigned char>{1, 2, 3}));
}

TEST(MovieFrameQueue, WriterThatWaitedForFramesIsToldOnceAndABusyOneIsNot)
{
    CDIB frame(8, 4, 32);
    CountingProgress progress;
    std::mutex gate;
    std::unique_lock<std::mutex> held(gate);
    std::atomic<bool> inside{false};
    // A write that takes as long as the test holds the gate.
    MovieFrameQueue queue(&frame, MovieFrameQueue::kBuffers, [&](CDIB*) {
        inside = true;
        std::lock_guard<std::mutex> pass(gate);
        return true;
    });
    // Before the first frame the writer has nothing to do.
    EXPECT_TRUE(queue.WriterWaitedForFrames());
    CDIB* first = queue.Next(progress);
    ASSERT_TRUE(queue.Queue(first, progress));
    while (!inside)
        std::this_thread::yield();
    queue.WriterWaitedForFrames();  // the writer may have waited once before the frame came
    // Inside a write that does not end, it cannot wait for frames.
    EXPECT_FALSE(queue.WriterWaitedForFrames());
    held.unlock();
    EXPECT_TRUE(queue.Finish(progress));
    // With the write done it waits for the next frame, and that is told.
    bool waited = false;
    for (int i = 0; i < 10000 && !waited; ++i) {
        waited = queue.WriterWaitedForFrames();
        if (!waited)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_TRUE(waited);
}

TEST(MovieFrameQueue, WithoutAWritingThreadNoWriterWaits)
{
    CDIB frame(8, 4, 32);
    FakeMovie movie;
    MovieFrameQueue queue(&frame, 1, movie.Writer());
    EXPECT_FALSE(queue.WriterWaitedForFrames());
}

TEST(MovieFrameQueue, FinishWithNothingQueuedLeavesTheFrameAlone)
{
    CDIB frame(8, 4, 32);
    Mark(&frame, 42);
    FakeMovie movie;
    CountingProgress progress;
    MovieFrameQueue queue(&frame, MovieFrameQueue::kBuffers, movie.Writer());
    EXPECT_EQ(queue.Last(), &frame);
    EXPECT_TRUE(queue.Finish(progress));
    EXPECT_EQ(frame.GetBitsAdd(0)[0], 42);
    EXPECT_TRUE(movie.Marks().empty());
}

}  // namespace
