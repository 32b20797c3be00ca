#pragma once
// A blocking queue of integers: the only link between the main thread and the worker task.
// Posting never blocks; waiting blocks until a value arrives or the queue is closed.

#include <condition_variable>
#include <deque>
#include <mutex>

class TaskQueue {
public:
    TaskQueue() = default;
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;

    // Appends one value and wakes one waiter. Values posted after Close are dropped.
    void Post(int value);
    // Takes the oldest value, waiting without limit for one. False when the queue was closed
    // and holds nothing more: the wait itself failed.
    bool Wait(int* value);
    // Wakes every waiter; later waits fail once the values already posted are taken.
    void Close();

private:
    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<int> values_;
    bool closed_ = false;
};
