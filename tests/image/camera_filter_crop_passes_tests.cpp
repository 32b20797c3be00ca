// The two passes of the straight camera crop on tiny lines whose results are worked out by hand:
// the row pass, the column pass, its fixed-tap form, and the outside colour. Each runs with the
// plain loops and with the vector loops where the processor has them.

#include <gtest/gtest.h>

#include <vector>

#include "image/camera_filter.h"
#include "image/camera_filter_crop_passes.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Runs each test once with the vector loops allowed and once with the plain ones.
class CropPasses : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { gCameraFilterPlainLoops = GetParam(); }
    void TearDown() override { gCameraFilterPlainLoops = saved; }
    bool saved = gCameraFilterPlainLoops;
};

INSTANTIATE_TEST_SUITE_P(Loops, CropPasses, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "Plain" : "Vector";
                         });

Span RowSpan(int count, uint32_t firstWeight, uint32_t lastWeight, uint32_t divisor)
{
    return Span{.outside = false,
                .first = 0,
                .count = count,
                .firstWeight = firstWeight,
                .lastWeight = lastWeight,
                .reciprocal = kReciprocalOne / divisor,
                .wide = false};
}

TEST_P(CropPasses, TwoHalfRowsAverage)
{
    // Half of each row over a divisor of 256: (128 × a + 128 × b) × 4096 >> 20 = (a + b) / 2.
    Bytes rows = {10, 20, 200, 255, 30, 40, 100, 255};
    Bytes line(4, 0xEE);
    BlendRows(rows.data(), 4, RowSpan(2, 128, 128, 256), line.data(), 0, 4);
    EXPECT_EQ(line, (Bytes{20, 30, 150, 255}));
}

TEST_P(CropPasses, ThreeRowsTruncateTheirWeightedAverage)
{
    // (128 × 10 + 256 × 20 + 128 × 31) × 2048 >> 20 = 10368 × 2048 >> 20 = 20 (20.25 cut).
    Bytes rows = {10, 20, 31};
    Bytes line(1, 0xEE);
    BlendRows(rows.data(), 1, RowSpan(3, 128, 128, 512), line.data(), 0, 1);
    EXPECT_EQ(line, (Bytes{20}));
}

TEST_P(CropPasses, TruncatedReciprocalDarkensWhite)
{
    // A divisor of 384 has the reciprocal 2730 (2730.67 cut): (256 + 128) × 255 × 2730 >> 20
    // is 254, not 255.
    Bytes rows = {255, 255};
    Bytes line(1, 0xEE);
    BlendRows(rows.data(), 1, RowSpan(2, 256, 128, 384), line.data(), 0, 1);
    EXPECT_EQ(line, (Bytes{254}));
}

TEST_P(CropPasses, RowPassWritesOnlyItsRangeOfBytes)
{
    Bytes rows = {10, 20, 30, 40, 50, 60, 70, 80};
    Bytes line(4, 0xEE);
    BlendRows(rows.data(), 4, RowSpan(2, 128, 128, 256), line.data(), 1, 3);
    EXPECT_EQ(line, (Bytes{0xEE, 40, 50, 0xEE}));
}

TEST_P(CropPasses, OneWholeRowIsCopiedAndNoWeightGivesZero)
{
    Bytes rows = {1, 2, 3, 250};
    Bytes line(4, 0xEE);
    BlendRows(rows.data(), 4, RowSpan(1, 256, 0, 256), line.data(), 0, 4);
    EXPECT_EQ(line, rows);
    BlendRows(rows.data(), 4, RowSpan(0, 0, 0, 256), line.data(), 0, 4);
    EXPECT_EQ(line, (Bytes{0, 0, 0, 0}));
}

TEST_P(CropPasses, ManyRowsOverALongLineMatchTheirWeightedSum)
{
    // Five rows, 64 + 3 × 256 + 192 = 1024: reciprocal 1024. 40 bytes reach past the vector
    // loop's 16-byte steps into its tail.
    constexpr int kWidth = 40;
    constexpr int kRows = 5;
    Bytes rows(kWidth * kRows);
    for (int k = 0; k < kRows; ++k)
        for (int i = 0; i < kWidth; ++i)
            rows[k * kWidth + i] = static_cast<unsigned char>((i * 6 + k * 40) % 256);
    Bytes line(kWidth, 0xEE);
    BlendRows(rows.data(), kWidth, RowSpan(kRows, 64, 192, 1024), line.data(), 0, kWidth);
    for (int i = 0; i < kWidth; ++i) {
        uint32_t sum = 64 * rows[i] + 192 * rows[4 * kWidth + i];
        for (int k = 1; k < 4; ++k)
            sum += 256 * rows[k * kWidth + i];
        EXPECT_EQ(line[i], sum * 1024 >> 20) << i;
    }
}

TEST(CropColumns, ColumnCarriesPremultipliedWeightsAndItsFirstByte)
{
    Span span{.outside = false,
              .first = 2,
              .count = 3,
              .firstWeight = 64,
              .lastWeight = 192,
              .reciprocal = 2048,
              .wide = false};
    CropColumn column = MakeCropColumn(span, 3);
    EXPECT_EQ(column.offset, 6u);
    EXPECT_EQ(column.count, 3);
    EXPECT_EQ(column.first, 64u * 2048);
    EXPECT_EQ(column.middle, 256u * 2048);
    EXPECT_EQ(column.last, 192u * 2048);
    EXPECT_EQ(column.reciprocal, 0u);
}

TEST(CropColumns, WideColumnKeepsPlainWeightsAndItsReciprocal)
{
    Span span{.outside = false,
              .first = 1,
              .count = 2,
              .firstWeight = 64,
              .lastWeight = 192,
              .reciprocal = 2048,
              .wide = true};
    CropColumn column = MakeCropColumn(span, 4);
    EXPECT_EQ(column.offset, 4u);
    EXPECT_EQ(column.first, 64u);
    EXPECT_EQ(column.middle, 256u);
    EXPECT_EQ(column.last, 192u);
    EXPECT_EQ(column.reciprocal, 2048u);
    span.outside = true;
    EXPECT_EQ(MakeCropColumn(span, 4).count, -1);
}

// Three 32-bit pixels, then a pad of outside pixels the fixed taps read for outside columns.
struct TinyLine {
    Bytes bytes = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120};
    uint32_t padOffset = 12;
    TinyLine()
    {
        bytes.resize(12 + 32);
        WriteOutsideRow(bytes.data() + padOffset, 8, 4);
    }
};

// Columns: pixels 0 and 1 whole over 512; outside; halves of pixels 1 and 2 over 256.
std::vector<CropColumn> TinyColumns()
{
    return {MakeCropColumn(Span{false, 0, 2, 256, 256, kReciprocalOne / 512, false}, 4),
            MakeCropColumn(Span{true, 0, 0, 0, 0, 0, false}, 4),
            MakeCropColumn(Span{false, 1, 2, 128, 128, kReciprocalOne / 256, false}, 4)};
}

TEST_P(CropPasses, ColumnPassAveragesPixelsAndWritesTheOutsideColour)
{
    TinyLine line;
    std::vector<CropColumn> columns = TinyColumns();
    Bytes out(12, 0xEE);
    BlendColumns(line.bytes.data(), columns.data(), 3, 4, out.data());
    EXPECT_EQ(out, (Bytes{30, 40, 50, 60, kOutsideLevel, kOutsideLevel, kOutsideLevel,
                          OutsideAlpha(32), 70, 80, 90, 100}));
}

TEST_P(CropPasses, ColumnPassOf24BitPixelsGivesOpaquePixels)
{
    Bytes line = {10, 20, 30, 50, 60, 70, 0, 0, 0, 0};
    std::vector<CropColumn> columns = {
        MakeCropColumn(Span{false, 0, 2, 128, 128, kReciprocalOne / 256, false}, 3)};
    Bytes out(4, 0xEE);
    BlendColumns(line.data(), columns.data(), 1, 3, out.data());
    EXPECT_EQ(out, (Bytes{30, 40, 50, 255}));
}

TEST_P(CropPasses, FixedTapsGiveTheSameBytesAsTheColumnPass)
{
    TinyLine line;
    std::vector<CropColumn> columns = TinyColumns();
    CropTaps taps[3];
    int tapCount = MakeCropTaps(columns.data(), 3, line.padOffset, taps);
    EXPECT_EQ(tapCount, 2);
    Bytes out(12, 0xEE);
    BlendColumnTaps(line.bytes.data(), taps, tapCount, 3, 4, out.data());
    EXPECT_EQ(out, (Bytes{30, 40, 50, 60, kOutsideLevel, kOutsideLevel, kOutsideLevel,
                          OutsideAlpha(32), 70, 80, 90, 100}));
}

TEST(CropColumns, NoFixedTapsPastFourPixelsOrForWideColumns)
{
    std::vector<CropColumn> five = {
        MakeCropColumn(Span{false, 0, 5, 256, 256, kReciprocalOne / 1280, false}, 4)};
    CropTaps taps[1];
    EXPECT_EQ(MakeCropTaps(five.data(), 1, 64, taps), 0);
    std::vector<CropColumn> wide = {MakeCropColumn(Span{false, 0, 2, 256, 256, 16, true}, 4)};
    EXPECT_EQ(MakeCropTaps(wide.data(), 1, 64, taps), 0);
}

TEST(CropOutside, OutsidePixelIsDarkGreyClearFrom32BitAndOpaqueFrom24Bit)
{
    Bytes out(8, 0xEE);
    WriteOutsideRow(out.data(), 2, 32 / 8);
    EXPECT_EQ(out, (Bytes{0x11, 0x11, 0x11, 0, 0x11, 0x11, 0x11, 0}));
    WriteOutside(out.data(), 24 / 8);
    EXPECT_EQ(out, (Bytes{0x11, 0x11, 0x11, 255, 0x11, 0x11, 0x11, 0}));
}

// Reading ahead only asks the memory for bytes: rows that start and end mid cache line, up to the
// last byte of their block, read back as they were.
TEST(CropReadAhead, RowsReadAheadAreLeftAsTheyWere)
{
    constexpr long kStride = 203;
    std::vector<unsigned char> rows(3 * kStride);
    for (size_t i = 0; i < rows.size(); ++i)
        rows[i] = static_cast<unsigned char>(i * 7);
    const std::vector<unsigned char> before = rows;
    ReadAheadRows(rows.data(), kStride, 3, 5, kStride);
    ReadAheadRows(rows.data() + kStride, kStride, 0, 0, kStride);
    ReadAheadRows(rows.data(), kStride, 1, 9, 9);
    EXPECT_EQ(rows, before);
}

}  // namespace
