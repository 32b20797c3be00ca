#include "platform/task/task_queue.h"

void TaskQueue::Post(int value)
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (closed_)
            return;
        values_.push_back(value);
    }
    posted_.notify_one();
}

bool TaskQueue::Wait(int* value)
{
    std::unique_lock<std::mutex> lock(mutex_);
    posted_.wait(lock, [this] { return !values_.empty() || closed_; });
    if (values_.empty())
        return false;
    int first = values_.front();
    values_.pop_front();
    if (value)
        *value = first;
    return true;
}

void TaskQueue::Close()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        closed_ = true;
    }
    posted_.notify_all();
}
