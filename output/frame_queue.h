#pragma once
// Frames on their way into the open movie: the calling thread renders the next frame while a
// thread of the queue's own compresses and writes the ones before it, so a render takes about
// as long as its encoder alone. The queue owns up to three frame buffers (the caller's and two
// more of its size) and hands out one that no waiting write still needs. Everything the user
// sees (RenderProgress) happens on the calling thread; the writing thread only writes.
//
// Writes keep the order they were queued in. After a write fails nothing more is written: the
// frames still waiting are dropped, and Queue and Finish answer false.

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "output/render_driver.h"

class MovieFrameQueue {
public:
    // Writes one frame into the movie; false when it could not. Runs on the writing thread.
    using Writer = std::function<bool(CDIB* frame)>;

    // Frame buffers in all, the caller's included: one renders while another is written and a
    // third absorbs a slow frame on either side.
    static constexpr int kBuffers = 3;
    // Writes that may wait at once; holds queue one buffer many times.
    static constexpr size_t kWaitingWrites = 3;

    // `frame` is the caller's frame buffer, the first to be handed out and, after Finish, the
    // holder of the last frame queued. With `buffers` of 1, or when no thread or no memory for
    // the other buffers can be had, frames are rendered and written in turn as before.
    MovieFrameQueue(CDIB* frame, int buffers, Writer write);
    // Waits for the writes still queued.
    ~MovieFrameQueue();
    MovieFrameQueue(const MovieFrameQueue&) = delete;
    MovieFrameQueue& operator=(const MovieFrameQueue&) = delete;

    // A buffer to render the next frame into: one that no queued write still reads. Waits for
    // one, telling `progress` of each frame written meanwhile.
    CDIB* Next(RenderProgress& progress);
    // Queues one more write of `frame` (a buffer from Next, or Last() again for a hold). Waits
    // while kWaitingWrites are waiting. False, and nothing queued, once a write has failed.
    bool Queue(CDIB* frame, RenderProgress& progress);
    // The buffer queued last; the caller's frame before anything was queued.
    CDIB* Last() const { return last_; }
    // True once a write has failed (as far as the writing thread has got).
    bool Failed();
    // True when the writing thread has waited for a frame to write since the last call (or since
    // it started): rendering is the slower side, and the writer's processor has time to spare
    // for the next frame's render. False without a writing thread.
    bool WriterWaitedForFrames();
    // Waits until every queued write is done, telling `progress` of each. Then the caller's frame
    // holds the last frame queued. True when every write went in.
    bool Finish(RenderProgress& progress);

private:
    struct Buffer {
        CDIB* image;
        long queued;  // writes of it waiting or under way
    };

    void WriteQueued();
    // Waits until `ready` holds (under the lock), telling `progress` of frames written meanwhile.
    void WaitFor(const std::function<bool()>& ready, RenderProgress& progress);

    Writer write_;
    CDIB* frame_;
    CDIB* last_;
    std::vector<std::unique_ptr<CDIB>> owned_;
    std::vector<Buffer> buffers_;
    size_t nextBuffer_ = 0;  // where Next starts looking, round the buffers

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<size_t> waiting_;  // buffers to write, in order
    long written_ = 0;            // frames written by the writing thread
    long reported_ = 0;           // of them, told to the progress
    bool failed_ = false;
    bool starved_ = false;  // the writing thread waited for a frame since the last question
    bool stopping_ = false;
    std::thread writer_;  // not joinable: frames are written in Queue, on the calling thread
};
