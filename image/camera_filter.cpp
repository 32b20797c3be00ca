// The camera filters' entry point for the renderers (FilterCropMulti), the split of one frame
// between the calling thread and the worker task, and the row plan both filters follow.
// The straight crop is in camera_filter_crop.cpp, the rotating filter in camera_filter_rot.cpp.

#include "image/camera_filter.h"

#include <algorithm>
#include <cstring>

#include "platform/base/memory.h"

bool gCameraFilterPlainLoops = false;
CameraLoops gCameraFilterLoops = CameraLoops::kAvx512;

CameraLoops BestCameraLoops()
{
#if defined(__x86_64__) && defined(__GNUC__)
    static const CameraLoops best = [] {
        __builtin_cpu_init();  // may run before the constructors that would do it
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw"))
            return CameraLoops::kAvx512;
        if (__builtin_cpu_supports("avx2"))
            return CameraLoops::kAvx2;
        if (__builtin_cpu_supports("sse4.1"))
            return CameraLoops::kSse41;
        return CameraLoops::kPlain;
    }();
    return best;
#else
    return CameraLoops::kPlain;
#endif
}

CameraLoops ActiveCameraLoops()
{
    if (gCameraFilterPlainLoops)
        return CameraLoops::kPlain;
    return std::min(gCameraFilterLoops, BestCameraLoops());
}

bool PlanCameraRows(int destinationHeight, int part, int fieldCode, float sourceRowsPerRow,
                    CameraRows* rows)
{
    int step = fieldCode / 10 + 1;
    int field = fieldCode % 10;
    if (destinationHeight < 1 || step < 1 || part < 0 || part > 2)
        return false;
    // Row step 1: every row, the field moving the sampling down by half a destination row per
    // unit. A larger step renders one field of an interlaced frame: the field is its first row.
    int start = step > 1 ? field : 0;
    rows->step = step;
    rows->shift = step > 1 ? 0.0f : static_cast<float>(field) * sourceRowsPerRow * 0.5f;
    rows->first = start;
    rows->end = destinationHeight;

    int middle = destinationHeight / 2;
    // The worker's half ends one row past the middle.
    int workerEnd = std::min(destinationHeight, middle + 1);
    if (part == 1) {
        rows->end = workerEnd;
    } else if (part == 2) {
        // The caller's half starts gMultiProcOffset rows from the middle, but never on a row the
        // worker renders (two threads writing one row is a data race even with equal bytes) and
        // never past the worker's end (an offset above 1 would leave rows unrendered); it starts
        // on a row of the field being rendered.
        // The worker's last row of the field (one step before the field's first when it has none).
        int workerLast = start - step;
        if (workerEnd > start)
            workerLast = workerEnd - 1 - (workerEnd - 1 - start) % step;
        long long from = static_cast<long long>(middle) + gMultiProcOffset;
        from = std::min<long long>(from, workerEnd);
        from = std::max<long long>(from, static_cast<long long>(workerLast) + 1);
        from = std::max<long long>(from, start);
        from += (step - (from - start) % step) % step;
        rows->first = static_cast<int>(std::min<long long>(from, destinationHeight));
    }
    return true;
}

bool CameraFilterAccepts(const CDIB& destination, const CDIB* source, float width, float height,
                         int part, int fieldCode, CameraRows* rows)
{
    if (source == nullptr || source->GetBitsAdd(0) == nullptr)
        return false;
    if (source->GetBitCount() != 24 && source->GetBitCount() != 32)
        return false;
    if (destination.GetBitsAdd(0) == nullptr || destination.GetBitCount() != 32)
        return false;
    // Written so that a window size that is not a number is refused as well.
    if (!(width >= 0.0f) || !(height >= 0.0f))
        return false;
    float sourceRowsPerRow = height / static_cast<float>(destination.GetHgt());
    return PlanCameraRows(destination.GetHgt(), part, fieldCode, sourceRowsPerRow, rows);
}

int mfThreadFunc(void* taskBlock)
{
    CameraTask* task = &static_cast<CameraTaskBlock*>(taskBlock)->task;
    bool done = task->destination != nullptr &&
                task->destination->FilterCrop(task->source, task->left, task->top, task->width,
                                              task->height, task->angle, task->tiltV, task->tiltH,
                                              task->part, task->quality, task->fieldCode);
    task->busy = 0;
    return done ? 1 : 0;
}

bool CDIB::FilterCropMulti(CDIB* source, float left, float top, float width, float height,
                           float angle, float tiltV, float tiltH, int quality, int fieldCode)
{
    if (!gMultiProcess || !gCanMultiProcess)
        return FilterCrop(source, left, top, width, height, angle, tiltV, tiltH, 0, quality,
                          fieldCode);

    // Both halves would refuse the same arguments: refuse them once, before the worker is asked.
    CameraRows rows{};
    if (!CameraFilterAccepts(*this, source, width, height, 0, fieldCode, &rows))
        return false;
    auto* block = static_cast<CameraTaskBlock*>(AllocMemBlock(sizeof(CameraTaskBlock)));
    if (block == nullptr)
        return FilterCrop(source, left, top, width, height, angle, tiltV, tiltH, 0, quality,
                          fieldCode);
    std::memset(block, 0, sizeof(CameraTaskBlock));
    block->task = CameraTask{source, this,  left, top,     width,     height, angle,
                             tiltV,  tiltH, 1,    quality, fieldCode, 1};

    // The worker renders the rows below the middle from its copy of the block, this thread the
    // rest; the two never write the same row.
    _beginthread(mfThreadFunc, 0, block);
    FilterCrop(source, left, top, width, height, angle, tiltV, tiltH, 2, quality, fieldCode);
    Sleep(0);
    FreeMemBlock(block);
    return true;
}
