#include "image/camera_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "image/camera_filter_pixels.h"
#include "platform/task/worker.h"

using pxtest::AllRows;
using pxtest::FramePixel;
using pxtest::MarkedFrame;
using pxtest::PatternSource;
using pxtest::RowIsMarked;
using pxtest::SourcePixel;

namespace {

struct Camera {
    float left;
    float top;
    float width;
    float height;
    float angle;
    float tiltV;
    float tiltH;
};

// One frame rendered whole on the calling thread.
std::vector<unsigned char> OneThreadFrame(CDIB& source, const Camera& c, long width, long height,
                                          int quality, int fieldCode)
{
    auto frame = MarkedFrame(width, height);
    EXPECT_TRUE(frame->FilterCrop(&source, c.left, c.top, c.width, c.height, c.angle, c.tiltV,
                                  c.tiltH, 0, quality, fieldCode));
    return AllRows(*frame);
}

std::vector<unsigned char> MultiFrame(CDIB& source, const Camera& c, long width, long height,
                                      int quality, int fieldCode)
{
    auto frame = MarkedFrame(width, height);
    EXPECT_TRUE(frame->FilterCropMulti(&source, c.left, c.top, c.width, c.height, c.angle, c.tiltV,
                                       c.tiltH, quality, fieldCode));
    return AllRows(*frame);
}

// Starts the worker as the environment does at start-up, switches multiprocessing on, and
// stops the worker again as the environment does at exit.
class CameraSplit : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedOffset_ = gMultiProcOffset;
        ASSERT_TRUE(InitMPWithProcessors(2));
        gMultiProcess = true;
    }
    void TearDown() override
    {
        CloseMP();
        gMultiProcess = false;
        gMultiProcOffset = savedOffset_;
    }

private:
    int savedOffset_ = 0;
};

}  // namespace

// ---- The worker's argument block ----

TEST(CameraTaskBlock, FillsTheWorkersArgumentAreaWithItsFieldsInOrder)
{
    EXPECT_EQ(sizeof(CameraTaskBlock), static_cast<size_t>(kTaskArgumentSize));
    EXPECT_LT(offsetof(CameraTask, source), offsetof(CameraTask, destination));
    EXPECT_LT(offsetof(CameraTask, destination), offsetof(CameraTask, left));
    EXPECT_LT(offsetof(CameraTask, left), offsetof(CameraTask, top));
    EXPECT_LT(offsetof(CameraTask, top), offsetof(CameraTask, width));
    EXPECT_LT(offsetof(CameraTask, width), offsetof(CameraTask, height));
    EXPECT_LT(offsetof(CameraTask, height), offsetof(CameraTask, angle));
    EXPECT_LT(offsetof(CameraTask, angle), offsetof(CameraTask, tiltV));
    EXPECT_LT(offsetof(CameraTask, tiltV), offsetof(CameraTask, tiltH));
    EXPECT_LT(offsetof(CameraTask, tiltH), offsetof(CameraTask, part));
    EXPECT_LT(offsetof(CameraTask, part), offsetof(CameraTask, quality));
    EXPECT_LT(offsetof(CameraTask, quality), offsetof(CameraTask, fieldCode));
    EXPECT_LT(offsetof(CameraTask, fieldCode), offsetof(CameraTask, busy));
    EXPECT_EQ(sizeof(CameraTask::part), 1u);
    EXPECT_EQ(sizeof(CameraTask::busy), 1u);
}

TEST(CameraTaskBlock, ThreadFuncRendersItsPartAndClearsBusy)
{
    auto source = PatternSource(20, 20, 24);
    auto frame = MarkedFrame(10, 9);
    auto whole = MarkedFrame(10, 9);
    ASSERT_TRUE(whole->FilterCrop(source.get(), 1.5f, 2.5f, 15, 14, 0, 0, 0, 0, 100, 0));
    CameraTaskBlock block{};
    block.task = CameraTask{source.get(), frame.get(), 1.5f, 2.5f, 15, 14, 0, 0, 0, 1, 100, 0, 1};
    EXPECT_EQ(mfThreadFunc(&block), 1);
    EXPECT_EQ(block.task.busy, 0);
    for (int row = 0; row < 9; ++row) {
        if (row < 9 / 2 + 1)
            EXPECT_EQ(pxtest::RowPixels(*frame, row), pxtest::RowPixels(*whole, row)) << row;
        else
            EXPECT_TRUE(RowIsMarked(*frame, row)) << row;
    }
    // A refused job answers 0 and still clears busy.
    auto paletted = PatternSource(20, 20, 8);
    block.task.source = paletted.get();
    block.task.busy = 1;
    EXPECT_EQ(mfThreadFunc(&block), 0);
    EXPECT_EQ(block.task.busy, 0);
}

// ---- Row plan ----

TEST(CameraRowPlan, FieldCodeGivesRowStepAndField)
{
    CameraRows rows{};
    ASSERT_TRUE(PlanCameraRows(9, 0, 0, 2.0f, &rows));
    EXPECT_EQ(rows.first, 0);
    EXPECT_EQ(rows.step, 1);
    EXPECT_EQ(rows.shift, 0.0f);
    ASSERT_TRUE(PlanCameraRows(9, 0, 1, 2.0f, &rows));
    EXPECT_EQ(rows.step, 1);
    EXPECT_EQ(rows.shift, 1.0f);  // field 1 × 2 source rows per row × 0.5
    ASSERT_TRUE(PlanCameraRows(9, 0, 10, 2.0f, &rows));
    EXPECT_EQ(rows.first, 0);
    EXPECT_EQ(rows.step, 2);
    EXPECT_EQ(rows.shift, 0.0f);
    ASSERT_TRUE(PlanCameraRows(9, 0, 11, 2.0f, &rows));
    EXPECT_EQ(rows.first, 1);
    EXPECT_EQ(rows.step, 2);
    EXPECT_EQ(rows.end, 9);
    EXPECT_FALSE(PlanCameraRows(9, 0, -10, 2.0f, &rows));
    EXPECT_FALSE(PlanCameraRows(9, 3, 0, 2.0f, &rows));
    EXPECT_FALSE(PlanCameraRows(0, 0, 0, 2.0f, &rows));
}

TEST(CameraRowPlan, HalvesMeetAtTheMiddle)
{
    const int saved = gMultiProcOffset;
    CameraRows worker{};
    CameraRows caller{};
    for (int height : {1, 2, 7, 8, 1080}) {
        ASSERT_TRUE(PlanCameraRows(height, 1, 0, 1.0f, &worker));
        EXPECT_EQ(worker.first, 0);
        EXPECT_EQ(worker.end, std::min(height, height / 2 + 1));
        // The caller starts on the row after the worker's last, whatever the offset.
        for (int offset : {0, 1, 40, -1000000, 2147483647, -2147483647 - 1}) {
            gMultiProcOffset = offset;
            ASSERT_TRUE(PlanCameraRows(height, 2, 0, 1.0f, &caller));
            EXPECT_EQ(caller.first, worker.end) << height << " " << offset;
            EXPECT_EQ(caller.end, height);
        }
    }
    gMultiProcOffset = saved;
}

namespace {

// The rows a plan renders, in order.
std::vector<int> PlannedRows(int height, int part, int fieldCode)
{
    CameraRows rows{};
    EXPECT_TRUE(PlanCameraRows(height, part, fieldCode, 1.0f, &rows));
    std::vector<int> planned;
    for (int row = rows.first; row < rows.end; row += rows.step)
        planned.push_back(row);
    return planned;
}

}  // namespace

TEST(CameraRowPlan, TheTwoHalvesRenderEveryRowOfTheWholeFrameOnce)
{
    // Both threads writing one row, even with equal bytes, is a data race.
    const int saved = gMultiProcOffset;
    for (int offset : {0, 1, 2, -1, -3, 7, -1000000, 2147483647}) {
        gMultiProcOffset = offset;
        for (int height = 1; height <= 12; ++height) {
            for (int fieldCode : {0, 1, 10, 11, 13, 20, 21}) {
                std::vector<int> split = PlannedRows(height, 1, fieldCode);
                std::vector<int> second = PlannedRows(height, 2, fieldCode);
                split.insert(split.end(), second.begin(), second.end());
                EXPECT_EQ(split, PlannedRows(height, 0, fieldCode))
                    << "height " << height << ", field code " << fieldCode << ", offset " << offset;
            }
        }
    }
    gMultiProcOffset = saved;
}

// ---- Thresholds through the renderers' entry point ----

TEST(CameraFilterQuality, Quality50SamplesNearestWithoutRotationAndInterpolatesWithRotation)
{
    // Samples half a pixel into the picture: the straight crop at 50 takes the nearest pixel,
    // the rotating filter at 50 already mixes two.
    CDIB source(8, 5, 24);
    for (int row = 0; row < 5; ++row)
        for (long x = 0; x < 8; ++x)
            source.GetBitsAdd(row)[x * 3] = static_cast<unsigned char>(x * 30);
    auto frame = MarkedFrame(4, 3);
    ASSERT_TRUE(frame->FilterCropMulti(&source, 1.5f, 1, 4, 3, 0, 0, 0, 50, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 30);
    source.useRotFilter = true;
    ASSERT_TRUE(frame->FilterCropMulti(&source, 1.5f, 1, 4, 3, 0, 0, 0, 50, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 45);
    ASSERT_TRUE(frame->FilterCropMulti(&source, 1.5f, 1, 4, 3, 0, 0, 0, 49, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0)[0], 30);
}

TEST(CameraFilterMulti, WithoutMultiprocessingRendersTheWholeFrameHere)
{
    ASSERT_FALSE(gMultiProcess);
    auto source = PatternSource(40, 30, 32);
    const Camera camera{2.3f, 1.7f, 30, 22, 0, 0, 0};
    EXPECT_EQ(MultiFrame(*source, camera, 17, 11, 100, 0),
              OneThreadFrame(*source, camera, 17, 11, 100, 0));
    // Switched on but without a worker: still the whole frame here.
    gMultiProcess = true;
    EXPECT_EQ(MultiFrame(*source, camera, 17, 11, 100, 11),
              OneThreadFrame(*source, camera, 17, 11, 100, 11));
    gMultiProcess = false;
}

// ---- Two threads ----

TEST_F(CameraSplit, WithMultiprocessingTheFrameEqualsTheSingleThreadFrame)
{
    auto source = PatternSource(90, 70, 24);
    const Camera camera{3.25f, -4.5f, 80.5f, 66.0f, 0, 0, 0};
    for (int offset : {0, 1, -2, 5}) {
        gMultiProcOffset = offset;
        for (int height : {1, 2, 3, 7, 8, 101}) {
            for (int fieldCode : {0, 1, 10, 11}) {
                for (int quality : {0, 100}) {
                    EXPECT_EQ(MultiFrame(*source, camera, 33, height, quality, fieldCode),
                              OneThreadFrame(*source, camera, 33, height, quality, fieldCode))
                        << "height " << height << ", field code " << fieldCode << ", offset "
                        << offset << ", quality " << quality;
                }
            }
        }
    }
}

TEST_F(CameraSplit, RotatedAndTiltedFrameEqualsTheSingleThreadFrame)
{
    // Tilts make the row ends drift with the row index: the caller's half must place its rows
    // as the whole frame does.
    auto source = PatternSource(90, 70, 32);
    source->useRotFilter = true;
    const Camera camera{10.5f, 8.25f, 60.0f, 45.0f, 17.0f, 12.0f, -9.0f};
    for (int offset : {0, 1, -2}) {
        gMultiProcOffset = offset;
        for (int height : {1, 2, 3, 7, 8, 101}) {
            for (int fieldCode : {0, 1, 10, 11}) {
                for (int quality : {0, 100}) {
                    EXPECT_EQ(MultiFrame(*source, camera, 29, height, quality, fieldCode),
                              OneThreadFrame(*source, camera, 29, height, quality, fieldCode))
                        << "height " << height << ", field code " << fieldCode << ", offset "
                        << offset << ", quality " << quality;
                }
            }
        }
    }
}

TEST_F(CameraSplit, WorkerRendersTheFirstHalfFromItsCopyOfTheBlock)
{
    auto source = PatternSource(40, 40, 24);
    auto frame = MarkedFrame(12, 9);
    ASSERT_TRUE(frame->FilterCropMulti(source.get(), 1, 2, 30, 30, 0, 0, 0, 100, 11));
    // The worker's copy: its half, the values handed over, busy cleared by the worker.
    const auto* copy = reinterpret_cast<const CameraTaskBlock*>(gTaskData->arguments);
    EXPECT_EQ(copy->task.source, source.get());
    EXPECT_EQ(copy->task.destination, frame.get());
    EXPECT_EQ(copy->task.part, 1);
    EXPECT_EQ(copy->task.quality, 100);
    EXPECT_EQ(copy->task.fieldCode, 11);
    EXPECT_EQ(copy->task.left, 1.0f);
    EXPECT_EQ(copy->task.height, 30.0f);
    EXPECT_EQ(copy->task.busy, 0);
    EXPECT_FALSE(gTaskData->outstanding);
}

TEST_F(CameraSplit, ManyFramesInARowMatchTheSingleThreadFrames)
{
    auto source = PatternSource(200, 150, 24);
    for (int frameNumber = 0; frameNumber < 40; ++frameNumber) {
        float t = static_cast<float>(frameNumber);
        const Camera camera{5 + t * 1.3f, 4 + t * 0.7f, 150 - t, 110 - t * 0.75f, 0, 0, 0};
        ASSERT_EQ(MultiFrame(*source, camera, 64, 47, 100, frameNumber % 2),
                  OneThreadFrame(*source, camera, 64, 47, 100, frameNumber % 2))
            << frameNumber;
    }
}

TEST_F(CameraSplit, RefusedArgumentsAreRefusedBeforeTheWorkerIsAsked)
{
    auto paletted = PatternSource(20, 20, 8);
    auto frame = MarkedFrame(8, 8);
    EXPECT_FALSE(frame->FilterCropMulti(paletted.get(), 0, 0, 8, 8, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterCropMulti(nullptr, 0, 0, 8, 8, 0, 0, 0, 100, 0));
    auto source = PatternSource(20, 20, 24);
    EXPECT_FALSE(frame->FilterCropMulti(source.get(), 0, 0, 8, 8, 0, 0, 0, 100, -10));
    for (int row = 0; row < 8; ++row)
        EXPECT_TRUE(RowIsMarked(*frame, row));
    EXPECT_EQ(gTaskData->function, nullptr);  // nothing was ever handed over
}

TEST_F(CameraSplit, OneRowFrameAndWideFrameSplitCleanly)
{
    auto source = PatternSource(300, 20, 32);
    const Camera camera{0, 0, 300, 20, 0, 0, 0};
    EXPECT_EQ(MultiFrame(*source, camera, 1, 1, 100, 0),
              OneThreadFrame(*source, camera, 1, 1, 100, 0));
    EXPECT_EQ(MultiFrame(*source, camera, 8192, 3, 100, 0),
              OneThreadFrame(*source, camera, 8192, 3, 100, 0));
    auto frame = MarkedFrame(300, 20);
    ASSERT_TRUE(frame->FilterCropMulti(source.get(), 0, 0, 300, 20, 0, 0, 0, 100, 0));
    for (int row = 0; row < 20; ++row)
        for (long x : {0L, 150L, 299L})
            EXPECT_EQ(FramePixel(*frame, x, row), SourcePixel(*source, x, row));
}
