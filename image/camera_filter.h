#pragma once
// The camera filters' shared pieces (camera_filter*.cpp): the argument block handed to the worker
// task when a frame is split between two threads, the worker's entry, and the row plan that both
// filters follow (which destination rows a part renders and where each row samples).
//
// Rows are storage rows (0 = bottom line) of the destination; sampling positions are storage rows
// of the source. The split globals (gMultiProcess, gCanMultiProcess, gMultiProcOffset) belong to
// the worker task in platform/task/worker.h.

#include <cstdint>

#include "image/cdib.h"
#include "platform/task/worker.h"

// The worker's half of a frame, copied whole into the worker's argument area by _beginthread.
// The worker runs on its own copy, so nothing is handed back through it.
struct CameraTask {
    CDIB* source;       // the picture, only read
    CDIB* destination;  // the 32-bit frame; the worker writes its own rows only
    float left;         // camera window, source pixels
    float top;          // first window row, source storage rows
    float width;
    float height;
    float angle;   // degrees
    float tiltV;   // degrees
    float tiltH;   // degrees
    uint8_t part;  // 1: the worker renders the first half
    int32_t quality;
    int32_t fieldCode;
    uint8_t busy;  // 1 when handed over; the worker clears it in its copy when done
};

// The block as allocated and copied: the fields above, the rest of the 256 bytes clear.
union CameraTaskBlock {
    CameraTask task;
    unsigned char bytes[kTaskArgumentSize];
};
static_assert(sizeof(CameraTaskBlock) == kTaskArgumentSize, "the worker's argument area");

// The worker's entry: runs FilterCrop on the block's destination with the block's values, clears
// `busy` and answers FilterCrop's result.
int mfThreadFunc(void* taskBlock);

// Which destination rows one call renders, and the field shift of its sampling.
struct CameraRows {
    int first;    // first row rendered
    int end;      // one past the last row that may be rendered
    int step;     // rows advance by this: fieldCode / 10 + 1
    float shift;  // row step 1 only: field × half a destination row, in source rows
};

// The rows of `part` (0 all, 1 the worker's half, 2 the caller's half) of a destination
// `destinationHeight` rows high, for `fieldCode`, with sourceRowsPerRow = window height ÷
// destination height. False for a part other than 0, 1, 2 or a row step below 1.
bool PlanCameraRows(int destinationHeight, int part, int fieldCode, float sourceRowsPerRow,
                    CameraRows* rows);

// What both filters check before touching a pixel: a 24- or 32-bit source with pixels, a 32-bit
// destination with pixels, a window size that is a number of 0 or more, and a part and field code
// that have a row plan (filled into `rows`, for the window height given).
bool CameraFilterAccepts(const CDIB& destination, const CDIB* source, float width, float height,
                         int part, int fieldCode, CameraRows* rows);

// The source row at which destination row `row` starts sampling: computed from the row's own
// index, never accumulated, so that either thread reaches the same value for the same row.
inline float CameraRowPosition(const CameraRows& rows, float top, float sourceRowsPerRow, int row)
{
    return top + static_cast<float>(row) * sourceRowsPerRow + rows.shift;
}

// The loops the camera filters run. The plain loops are the reference; the vector ones give the
// same bytes (tests compare every kind the processor has). The rotating filter has no SSE4.1 loop
// and runs its plain loop there.
enum class CameraLoops { kPlain, kSse41, kAvx2, kAvx512 };

// The widest loops this processor runs: kPlain where it has no SSE4.1 or is no x86 processor.
CameraLoops BestCameraLoops();

// The loops the filters run now: gCameraFilterLoops or, where the processor lacks them, the best
// it has; kPlain while gCameraFilterPlainLoops is set.
CameraLoops ActiveCameraLoops();

// The widest loops the filters may use (kAvx512 unless a test or benchmark narrows them).
extern CameraLoops gCameraFilterLoops;

// True: the camera filters run their plain loops even on processors with wider vector
// instructions. The results are the same; tests compare the two.
extern bool gCameraFilterPlainLoops;

// The outside colour: blue = green = red = 17 (deliberately a dark grey, not black) with alpha 0
// from a 32-bit source and 255 from a 24-bit one.
constexpr unsigned char kOutsideLevel = 0x11;
inline unsigned char OutsideAlpha(int sourceBits) { return sourceBits == 32 ? 0 : 255; }
