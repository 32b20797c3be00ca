#include "platform/task/worker.h"

#include <cstring>
#include <new>
#include <system_error>

TaskData* gTaskData = nullptr;
TaskQueue* gNotificationQueue = nullptr;
bool gCanMultiProcess = false;
bool gMultiProcess = false;
int gMultiProcOffset = 0;

// The thread's outermost function: runs the loop, then reports the end on the notification
// queue, as the system reports a task's end on its termination queue.
static void RunWorker(TaskData* block, TaskQueue* notification)
{
    int exitCode = TaskMP(block);
    notification->Post(exitCode);
}

int TaskMP(TaskData* block)
{
    for (;;) {
        int request = 0;
        if (!block->requests->Wait(&request))
            return kTaskWaitFailed;
        if (request != kTaskRequestRun) {
            block->results->Post(kTaskResultStopped);
            return kTaskResultStopped;
        }
        if (block->function)
            block->function(block->arguments);
        block->results->Post(kTaskResultDone);
    }
}

bool InitMP() { return InitMPWithProcessors(std::thread::hardware_concurrency()); }

bool InitMPWithProcessors(unsigned processorCount)
{
    CloseMP();  // leaves gTaskData, gNotificationQueue and gCanMultiProcess cleared
    // One processor gains nothing from a second thread: every job runs whole on the caller.
    if (processorCount <= 1)
        return false;

    gTaskData = new (std::nothrow) TaskData{};
    if (!gTaskData)
        return false;
    gNotificationQueue = new (std::nothrow) TaskQueue;
    gTaskData->requests = new (std::nothrow) TaskQueue;
    gTaskData->results = new (std::nothrow) TaskQueue;
    if (gNotificationQueue && gTaskData->requests && gTaskData->results) {
        try {
            gTaskData->task = new std::thread(RunWorker, gTaskData, gNotificationQueue);
        } catch (const std::bad_alloc&) {
            gTaskData->task = nullptr;
        } catch (const std::system_error&) {
            gTaskData->task = nullptr;
        }
    }
    if (!gTaskData->task) {
        CloseMP();
        return false;
    }
    gCanMultiProcess = true;
    return true;
}

void CloseMP()
{
    gCanMultiProcess = false;
    if (!gTaskData)
        return;
    if (gTaskData->task) {
        // A request already queued is finished first; the stop request follows it.
        gTaskData->requests->Post(kTaskRequestStop);
        int exitCode = 0;
        gNotificationQueue->Wait(&exitCode);
        gTaskData->task->join();
        delete gTaskData->task;
    }
    delete gTaskData->requests;
    delete gTaskData->results;
    delete gNotificationQueue;
    gNotificationQueue = nullptr;
    delete gTaskData;
    gTaskData = nullptr;
}

int _beginthread(TaskFunction function, uint32_t word, const void* arguments)
{
    if (!gTaskData || !gTaskData->task) {
        // No worker: the half is done on the calling thread, on a copy like the worker's.
        alignas(std::max_align_t) char copy[kTaskArgumentSize] = {};
        if (arguments)
            std::memcpy(copy, arguments, sizeof copy);
        if (function)
            function(copy);
        return 0;
    }
    // The worker reads the argument area while it runs: never overwrite it under a request.
    if (gTaskData->outstanding)
        Sleep(0);
    if (arguments)
        std::memcpy(gTaskData->arguments, arguments, kTaskArgumentSize);
    else
        std::memset(gTaskData->arguments, 0, kTaskArgumentSize);
    gTaskData->function = function;
    gTaskData->word = word;
    gTaskData->outstanding = true;
    gTaskData->requests->Post(kTaskRequestRun);
    return 0;
}

void Sleep(long)
{
    if (!gTaskData || !gTaskData->outstanding)
        return;
    int result = 0;
    gTaskData->results->Wait(&result);
    gTaskData->outstanding = false;
}
