#pragma once
// The one worker task: a second thread that runs half of a job while the main thread runs the
// other half. Pattern of every caller:
//
//     if (gMultiProcess && gCanMultiProcess) {
//         fill a 256-byte argument block describing the worker's half;
//         _beginthread(entry, 0, block);   // returns at once
//         do the other half here;
//         Sleep(0);                        // waits for the worker's half
//     } else {
//         do the whole job here;
//     }
//
// At most one request is outstanding: each _beginthread is matched by one Sleep before the
// next. The halves must write disjoint memory; the queues are the only synchronisation.

#include <cstddef>
#include <cstdint>
#include <thread>

#include "platform/task/task_queue.h"

constexpr int kTaskArgumentSize = 256;  // the argument block, copied whole by _beginthread

constexpr int kTaskRequestRun = 1;      // request: run the stored function once
constexpr int kTaskRequestStop = 0;     // request: end the worker (any value other than 1 does)
constexpr int kTaskResultDone = 0;      // result: the function has returned
constexpr int kTaskResultStopped = -1;  // result and exit code: the worker ended on request
constexpr int kTaskWaitFailed = -2;     // exit code: waiting on the request queue failed

// The worker's entry. Gets the address of the worker's own copy of the argument block; its
// result is ignored.
using TaskFunction = int (*)(void* arguments);

// The task block: allocated cleared at start, freed by CloseMP.
struct TaskData {
    std::thread* task;      // the worker thread; null until created
    TaskQueue* requests;    // main thread -> worker
    TaskQueue* results;     // worker -> main thread
    TaskFunction function;  // what the next request runs
    uint32_t word;          // given to _beginthread and otherwise unused
    alignas(std::max_align_t) char arguments[kTaskArgumentSize];  // callers cast it to their block
    bool outstanding;  // a request was posted and its result not yet taken by Sleep
};

extern TaskData* gTaskData;            // null while there is no worker
extern TaskQueue* gNotificationQueue;  // receives the worker's exit code when it ends
extern bool gCanMultiProcess;          // more than one processor, and the worker exists
extern bool gMultiProcess;             // the user's choice ("MultiProcess"), set by the document
extern int gMultiProcOffset;           // first row of the caller's half, relative to the middle

// Creates the worker when the machine has more than one processor. Answers gCanMultiProcess.
// A worker that already exists is stopped first.
bool InitMP();
// The same with the processor count given: InitMP passes the machine's own.
bool InitMPWithProcessors(unsigned processorCount);
// Stops the worker (posts a stop request, waits for its end, joins it) and frees everything.
// Does nothing when there is no worker.
void CloseMP();

// Copies 256 bytes of `arguments` into the task block, stores `function` and `word`, and posts
// one run request; returns 0 at once. The function is called with the copy's address, so results
// must go through pointers held in the block. With no worker, the function runs here and now.
int _beginthread(TaskFunction function, uint32_t word, const void* arguments);
// Waits without limit for the worker to finish the outstanding request. The argument is ignored:
// this is the join, not a timed pause. Returns at once when nothing is outstanding.
void Sleep(long ignored);

// The worker's body: waits for requests; 1 runs the function and answers 0; any other value
// answers -1 and ends with -1. A failed wait ends it with kTaskWaitFailed.
int TaskMP(TaskData* block);
