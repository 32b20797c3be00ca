#include "image/cdib.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "image/camera_filter_pixels.h"

using pxtest::FrameIsAll;
using pxtest::FramePixel;
using pxtest::kMarker;
using pxtest::MarkedFrame;
using pxtest::OutsideGrey;
using pxtest::PatternSource;
using pxtest::Rgba;
using pxtest::RowIsMarked;
using pxtest::SourcePixel;

namespace {

constexpr int kBilinear = 100;
constexpr int kNearest = 0;

struct Camera {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    float angle = 0;
    float tiltV = 0;
    float tiltH = 0;
};

bool Rot(CDIB& frame, CDIB& source, const Camera& camera, int quality = kBilinear,
         int fieldCode = 0, int part = 0)
{
    return frame.FilterRot(&source, camera.left, camera.top, camera.width, camera.height,
                           camera.angle, camera.tiltV, camera.tiltH, part, quality, fieldCode);
}

// Pixels that differ irregularly from their neighbours, so that a sample taken from the wrong
// pixel or mixed with the wrong neighbour shows.
std::unique_ptr<CDIB> NoiseSource(long width, long height, int bits)
{
    auto source = std::make_unique<CDIB>(width, height, bits);
    uint32_t state = 977;
    for (int row = 0; row < height; ++row) {
        unsigned char* at = source->GetBitsAdd(row);
        for (long i = 0; i < width * (bits / 8); ++i) {
            state = state * 1103515245u + 12345u;
            at[i] = static_cast<unsigned char>(state >> 23);
        }
    }
    return source;
}

// A source whose blue byte is the column and whose green byte is the storage row.
std::unique_ptr<CDIB> CoordinateSource(long width, long height, int bits)
{
    auto source = std::make_unique<CDIB>(width, height, bits);
    for (int row = 0; row < height; ++row)
        for (long x = 0; x < width; ++x) {
            unsigned char* at = source->GetBitsAdd(row) + x * (bits / 8);
            at[0] = static_cast<unsigned char>(x);
            at[1] = static_cast<unsigned char>(row);
            at[2] = 99;
        }
    return source;
}

// The bilinear value of one channel with taps dx columns and dy rows apart.
unsigned char Bilinear(const CDIB& source, float column, float row, int dx, int dy, int c)
{
    auto x = static_cast<long>(column);
    auto y = static_cast<int>(row);
    float fx = column - static_cast<float>(x);
    float fy = row - static_cast<float>(y);
    auto at = [&](long px, int py) {
        return static_cast<float>(pxtest::Pixel(source, px, py)[static_cast<size_t>(c)]);
    };
    float top = at(x, y) + (at(x + dx, y) - at(x, y)) * fx;
    float bottom = at(x, y + dy) + (at(x + dx, y + dy) - at(x, y + dy)) * fx;
    return static_cast<unsigned char>(static_cast<int>(top + (bottom - top) * fy));
}

// What FilterRot (part 0, field code 0, bilinear) writes, sample by sample from its definition.
void ReferenceRot(const CDIB& source, const Camera& camera, CDIB& frame)
{
    const int frameWidth = frame.GetWid();
    const int frameHeight = frame.GetHgt();
    const int bits = source.GetBitCount();
    const float sy = camera.height / static_cast<float>(frameHeight);
    const double cosA = std::cos(camera.angle * 0.0174532);
    const double sinA = std::sin(camera.angle * -0.0174532);
    const float ky = camera.tiltV / 90.0f * camera.height * 0.25f;
    const float kx = camera.tiltH / 90.0f * camera.width * 0.25f;
    const double cx = static_cast<double>(camera.left) + camera.width / 2.0;
    const double cy = static_cast<double>(camera.top) + camera.height / 2.0;
    const int dy = std::max(static_cast<int>(std::fabs(std::trunc(sy * 0.5))), 1);
    for (int r = 0; r < frameHeight; ++r) {
        double rowLeft = camera.left + r * (2.0 * kx / frameHeight);
        double rowWidth = camera.width - 2.0 * r * (2.0 * kx / frameHeight);
        double v = camera.top + static_cast<float>(r) * sy;
        double leftRow = v - ky - r * (2.0 * ky / frameHeight);
        double rightRow = v + ky + r * (2.0 * ky / frameHeight);
        auto rotateRow = [&](double ox, double oy) { return cy + ox * sinA + oy * cosA; };
        auto rotateColumn = [&](double ox, double oy) { return cx + ox * cosA - oy * sinA; };
        double c0 = rotateColumn(rowLeft - cx, leftRow - cy);
        double r0 = rotateRow(rowLeft - cx, leftRow - cy);
        double c1 = rotateColumn(rowLeft + rowWidth - cx, rightRow - cy);
        double r1 = rotateRow(rowLeft + rowWidth - cx, rightRow - cy);
        auto columnStep = static_cast<float>((c1 - c0) / frameWidth);
        auto rowStep = static_cast<float>((r1 - r0) / frameWidth);
        int dx = std::max(static_cast<int>(std::fabs(std::trunc(rowWidth / frameWidth * 0.5))), 1);
        for (int x = 0; x < frameWidth; ++x) {
            float column = static_cast<float>(c0) + static_cast<float>(x) * columnStep;
            float row = static_cast<float>(r0) + static_cast<float>(x) * rowStep;
            Rgba colour = OutsideGrey(bits);
            if (column >= dx && column <= source.GetWid() - dx - 1 && row >= dy &&
                row <= source.GetHgt() - dy - 1) {
                for (int c = 0; c < bits / 8; ++c)
                    colour[static_cast<size_t>(c)] = Bilinear(source, column, row, dx, dy, c);
                if (bits == 24)
                    colour[3] = 255;
            }
            std::memcpy(frame.GetBitsAdd(r) + x * 4, colour.data(), 4);
        }
    }
}

// Compares the whole frame with the reference, rendered with the vector and the plain loops.
void ExpectMatchesReference(CDIB& source, const Camera& camera, long frameWidth, long frameHeight)
{
    auto expected = MarkedFrame(frameWidth, frameHeight);
    ReferenceRot(source, camera, *expected);
    pxtest::WithEachLoopKind([&](bool plain) {
        auto frame = MarkedFrame(frameWidth, frameHeight);
        ASSERT_TRUE(Rot(*frame, source, camera));
        EXPECT_EQ(pxtest::AllRows(*frame), pxtest::AllRows(*expected))
            << "window " << camera.left << ", " << camera.top << ", " << camera.width << " x "
            << camera.height << ", angle " << camera.angle << ", tilts " << camera.tiltV << ", "
            << camera.tiltH << (plain ? ", plain loops" : ", vector loops");
    });
}

}  // namespace

// ---- Every accepted source depth ----

template <typename T>
class RotAtEveryDepth : public ::testing::Test {
protected:
    static constexpr int kBits = T::kBits;
};
TYPED_TEST_SUITE(RotAtEveryDepth, pxtest::CameraDepths, pxtest::DepthNames);

TYPED_TEST(RotAtEveryDepth, OneToOneWithoutRotationReproducesInteriorAndGreysTheEdge)
{
    // Taps one pixel apart: a sample is inside from column 1 to width - 2 and from row 1 to
    // height - 2; there it lands on a whole pixel and is that pixel.
    auto source = PatternSource(12, 9, this->kBits);
    for (int quality : {kNearest, kBilinear}) {
        auto frame = MarkedFrame(12, 9);
        ASSERT_TRUE(Rot(*frame, *source, Camera{0, 0, 12, 9}, quality));
        for (int row = 0; row < 9; ++row) {
            for (long x = 0; x < 12; ++x) {
                bool inside = x >= 1 && x <= 10 && row >= 1 && row <= 7;
                Rgba expected = inside ? SourcePixel(*source, x, row) : OutsideGrey(this->kBits);
                if (inside && quality == kNearest && this->kBits == 24)
                    expected[3] = kMarker;  // nearest from 24 bits leaves the frame's alpha
                EXPECT_EQ(FramePixel(*frame, x, row), expected) << x << ", " << row;
            }
        }
    }
}

TYPED_TEST(RotAtEveryDepth, WindowWhollyOutsideGivesOutsideGrey)
{
    auto source = PatternSource(16, 12, this->kBits);
    const Camera windows[] = {{-1000, 2, 8, 6, 0},   {-9, 2, 8, 6, 0},   {5000, 2, 8, 6, 0},
                              {17, 2, 8, 6, 0},      {2, -900, 8, 6, 0}, {2, -7, 8, 6, 0},
                              {2, 700, 8, 6, 0},     {2, 13, 8, 6, 0},   {40, 40, 8, 6, 45},
                              {-30, -30, 8, 6, -135}};
    for (int quality : {kNearest, kBilinear}) {
        for (const Camera& window : windows) {
            auto frame = MarkedFrame(8, 6);
            ASSERT_TRUE(Rot(*frame, *source, window, quality));
            EXPECT_TRUE(FrameIsAll(*frame, OutsideGrey(this->kBits)))
                << window.left << ", " << window.top << ", quality " << quality;
        }
    }
}

TYPED_TEST(RotAtEveryDepth, HugeTinyAndUndefinedWindowsStayInsideTheSource)
{
    auto source = NoiseSource(30, 20, this->kBits);
    const float undefined = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    auto frame = MarkedFrame(7, 5);
    const Rgba grey = OutsideGrey(this->kBits);
    for (int quality : {kNearest, kBilinear}) {
        ASSERT_TRUE(Rot(*frame, *source, Camera{-1.0e6f, -1.0e6f, 2.0e6f, 2.0e6f, 33}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(
            Rot(*frame, *source, Camera{-3e38f, -3e38f, 3e38f, 3e38f, 10, 80, 80}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(Rot(*frame, *source, Camera{0, 0, infinite, infinite, 10}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(Rot(*frame, *source, Camera{5, 5, 10, 10, undefined}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(Rot(*frame, *source, Camera{undefined, 5, 10, 10, 20}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(Rot(*frame, *source, Camera{5, 5, 10, 10, 0, undefined, 0}, quality));
        EXPECT_TRUE(FrameIsAll(*frame, grey));
        ASSERT_TRUE(Rot(*frame, *source, Camera{5, 5, 10, 10, 1e30f, 1e30f, -1e30f}, quality));
        // A window smaller than a pixel: every sample lies between pixel (12, 8) and its
        // neighbours one tap away.
        ASSERT_TRUE(Rot(*frame, *source, Camera{12.1f, 8.1f, 0.5f, 0.5f, 7}, quality));
        for (int row = 0; row < 5; ++row)
            for (long x = 0; x < 7; ++x)
                for (int c = 0; c < 3; ++c) {
                    int got = FramePixel(*frame, x, row)[static_cast<size_t>(c)];
                    int low = 255;
                    int high = 0;
                    for (long px : {11L, 12L, 13L})
                        for (int py : {7, 8, 9}) {
                            low = std::min<int>(low, pxtest::Pixel(*source, px, py)[c]);
                            high = std::max<int>(high, pxtest::Pixel(*source, px, py)[c]);
                        }
                    EXPECT_GE(got, low);
                    EXPECT_LE(got, high);
                }
    }
}

TYPED_TEST(RotAtEveryDepth, OnePixelFrameSamplesTheWindowCorner)
{
    auto source = PatternSource(9, 9, this->kBits);
    auto frame = MarkedFrame(1, 1);
    ASSERT_TRUE(Rot(*frame, *source, Camera{2, 3, 1, 1}, kBilinear));
    EXPECT_EQ(FramePixel(*frame, 0, 0), SourcePixel(*source, 2, 3));
    ExpectMatchesReference(*source, Camera{2.5f, 3.25f, 4, 4, 30, 10, -10}, 1, 1);
}

TYPED_TEST(RotAtEveryDepth, FrameOf8192ColumnsEnlargesANarrowSource)
{
    // 128 frame columns per source column: every 128th sample lands on a whole pixel.
    auto source = NoiseSource(80, 6, this->kBits);
    auto frame = MarkedFrame(8192, 2);
    ASSERT_TRUE(Rot(*frame, *source, Camera{1, 2, 64, 2}, kBilinear));
    for (int row = 0; row < 2; ++row)
        for (long k = 0; k < 64; ++k)
            EXPECT_EQ(FramePixel(*frame, 128 * k, row), SourcePixel(*source, 1 + k, 2 + row)) << k;
    ExpectMatchesReference(*source, Camera{1.3f, 1.7f, 70, 2, 1.5f}, 8192, 2);
}

TYPED_TEST(RotAtEveryDepth, RotatedAndTiltedWindowsMatchTheirGeometry)
{
    auto source = NoiseSource(70, 50, this->kBits);
    std::mt19937 random(5150);
    std::uniform_real_distribution<float> position(-10.0f, 50.0f);
    std::uniform_real_distribution<float> size(0.5f, 60.0f);
    std::uniform_real_distribution<float> degrees(-400.0f, 400.0f);
    std::uniform_real_distribution<float> tilt(-40.0f, 40.0f);
    std::uniform_int_distribution<int> side(1, 19);
    for (int trial = 0; trial < 80; ++trial) {
        Camera camera{position(random), position(random), size(random), size(random),
                      degrees(random),  tilt(random),     tilt(random)};
        ExpectMatchesReference(*source, camera, side(random), side(random));
    }
}

// ---- Geometry ----

TEST(RotGeometry, QuarterTurnTurnsTheWindow)
{
    // 8 x 8 blocks; window 32 x 32 centred on (36, 36), frame 4 x 4: unturned, sample (x, r)
    // is at (20 + 8x, 20 + 8r). Turned by +90° it lands on column 20 + 8r, row 52 - 8x, in the
    // middle of block (2 + r, 6 - x).
    CDIB source(64, 64, 24);
    for (int row = 0; row < 64; ++row)
        for (long x = 0; x < 64; ++x) {
            unsigned char* at = source.GetBitsAdd(row) + x * 3;
            at[0] = static_cast<unsigned char>(x / 8 * 20);
            at[1] = static_cast<unsigned char>(row / 8 * 20);
        }
    auto frame = MarkedFrame(4, 4);
    ASSERT_TRUE(frame->FilterRot(&source, 20, 20, 32, 32, 90, 0, 0, 0, kNearest, 0));
    for (int r = 0; r < 4; ++r)
        for (long x = 0; x < 4; ++x) {
            Rgba got = FramePixel(*frame, x, r);
            EXPECT_EQ(got[0], (2 + r) * 20) << x << ", " << r;
            EXPECT_EQ(got[1], (6 - x) * 20) << x << ", " << r;
        }
    // The other way: column 52 - 8r, row 20 + 8x.
    ASSERT_TRUE(frame->FilterRot(&source, 20, 20, 32, 32, -90, 0, 0, 0, kNearest, 0));
    for (int r = 0; r < 4; ++r)
        for (long x = 0; x < 4; ++x) {
            Rgba got = FramePixel(*frame, x, r);
            EXPECT_EQ(got[0], (6 - r) * 20) << x << ", " << r;
            EXPECT_EQ(got[1], (2 + x) * 20) << x << ", " << r;
        }
}

TEST(RotGeometry, DegreeFactorIsTheShortConstant)
{
    // 3600° with 0.0174532 per degree is 62.83152 radians, 0.00033 short of ten turns: samples
    // 200 columns from the centre move by about a fifteenth of a row. With the exact factor the
    // frame would equal the unturned one.
    auto source = NoiseSource(420, 12, 24);
    const Camera turned{10, 4, 400, 4, 3600};
    auto tenTurns = MarkedFrame(400, 4);
    auto unturned = MarkedFrame(400, 4);
    ASSERT_TRUE(Rot(*tenTurns, *source, turned));
    ASSERT_TRUE(Rot(*unturned, *source, Camera{10, 4, 400, 4, 0}));
    EXPECT_NE(pxtest::AllRows(*tenTurns), pxtest::AllRows(*unturned));
    ExpectMatchesReference(*source, turned, 400, 4);
}

TEST(RotGeometry, HorizontalTiltNarrowsEachRowTowardsTheLastOne)
{
    // tiltH 45 on a window 64 wide: kx = 45 / 90 × 64 × 0.25 = 8, so row r starts r columns
    // further in and is 2r columns narrower: sample x is at column 10.5 + r + x × (64 - 2r) / 16.
    auto source = CoordinateSource(96, 48, 24);
    auto frame = MarkedFrame(16, 16);
    ASSERT_TRUE(frame->FilterRot(source.get(), 10.5f, 20.5f, 64, 16, 0, 0, 45, 0, kNearest, 0));
    for (int r = 0; r < 16; ++r)
        for (long x = 0; x < 16; ++x) {
            Rgba got = FramePixel(*frame, x, r);
            EXPECT_EQ(got[0], static_cast<int>(std::floor(10.5 + r + x * (64.0 - 2 * r) / 16)))
                << x << ", " << r;
            EXPECT_EQ(got[1], 20 + r) << x << ", " << r;
        }
}

TEST(RotGeometry, VerticalTiltDriftsTheRowEndsApart)
{
    // tiltV 45 on a window 16 high: ky = 2. Row r's left end is at row 20.5 + r - 2 - r / 4, its
    // right end at 20.5 + r + 2 + r / 4, and the samples step between them in 16ths.
    auto source = CoordinateSource(96, 48, 32);
    auto frame = MarkedFrame(16, 16);
    ASSERT_TRUE(frame->FilterRot(source.get(), 10.5f, 20.5f, 64, 16, 0, 45, 0, 0, kNearest, 0));
    for (int r = 0; r < 16; ++r)
        for (long x = 0; x < 16; ++x) {
            double leftEnd = 20.5 + r - 2 - r / 4.0;
            double rightEnd = 20.5 + r + 2 + r / 4.0;
            Rgba got = FramePixel(*frame, x, r);
            EXPECT_EQ(got[0], static_cast<int>(std::floor(10.5 + 4 * x))) << x << ", " << r;
            EXPECT_EQ(got[1], static_cast<int>(std::floor(leftEnd + x * (rightEnd - leftEnd) / 16)))
                << x << ", " << r;
        }
}

TEST(RotGeometry, TapsSpreadWithStrongReductions)
{
    // Four source columns per frame column: taps 2 columns apart. Samples at column c + 0.5
    // mix pixels c and c + 2 half and half, never c + 1.
    auto source = NoiseSource(40, 6, 24);
    auto frame = MarkedFrame(5, 1);
    ASSERT_TRUE(frame->FilterRot(source.get(), 2.5f, 2, 20, 1, 0, 0, 0, 0, kBilinear, 0));
    for (long x = 0; x < 5; ++x)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(FramePixel(*frame, x, 0)[static_cast<size_t>(c)],
                      Bilinear(*source, 2.5f + 4 * x, 2, 2, 1, c))
                << x;
    // Four source rows per frame row: taps 2 rows apart.
    auto tall = NoiseSource(6, 40, 24);
    auto column = MarkedFrame(1, 5);
    ASSERT_TRUE(column->FilterRot(tall.get(), 2, 2.5f, 1, 20, 0, 0, 0, 0, kBilinear, 0));
    for (int r = 0; r < 5; ++r)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(FramePixel(*column, 0, r)[static_cast<size_t>(c)],
                      Bilinear(*tall, 2, 2.5f + 4 * r, 1, 2, c))
                << r;
}

TEST(RotGeometry, SamplesCloserToTheEdgeThanATapAreOutside)
{
    // Taps 2 apart: column 2 is the first inside, column width - 3 the last.
    auto source = NoiseSource(20, 20, 24);
    auto frame = MarkedFrame(5, 1);
    // Samples at columns 1.9, 5.9, … and 2, 6, …, 18 (one row, at row 5).
    ASSERT_TRUE(frame->FilterRot(source.get(), 1.9f, 5, 20, 1, 0, 0, 0, 0, kBilinear, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), OutsideGrey(24));
    ASSERT_TRUE(frame->FilterRot(source.get(), 2, 5, 20, 1, 0, 0, 0, 0, kBilinear, 0));
    EXPECT_EQ(FramePixel(*frame, 0, 0), SourcePixel(*source, 2, 5));
    EXPECT_EQ(FramePixel(*frame, 4, 0), OutsideGrey(24));  // column 18 > 20 - 2 - 1
    ASSERT_TRUE(frame->FilterRot(source.get(), -1, 5, 20, 1, 0, 0, 0, 0, kBilinear, 0));
    EXPECT_EQ(FramePixel(*frame, 4, 0), SourcePixel(*source, 15, 5));
}

// ---- Quality threshold and alpha ----

TEST(RotQuality, Quality49SamplesTheNearestPixelAnd50Interpolates)
{
    auto source = NoiseSource(8, 5, 24);
    auto frame = MarkedFrame(4, 3);
    ASSERT_TRUE(frame->FilterRot(source.get(), 1.5f, 1, 4, 3, 0, 0, 0, 0, 49, 0));
    for (int r = 0; r < 3; ++r)
        for (long x = 0; x < 4; ++x) {
            Rgba expected = SourcePixel(*source, 1 + x, 1 + r);
            expected[3] = kMarker;
            EXPECT_EQ(FramePixel(*frame, x, r), expected);
        }
    ASSERT_TRUE(frame->FilterRot(source.get(), 1.5f, 1, 4, 3, 0, 0, 0, 0, 50, 0));
    for (int r = 0; r < 3; ++r)
        for (long x = 0; x < 4; ++x)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(FramePixel(*frame, x, r)[static_cast<size_t>(c)],
                          Bilinear(*source, 1.5f + x, static_cast<float>(1 + r), 1, 1, c));
}

TEST(RotQuality, AlphaIsInterpolatedFrom32BitAnd255From24Bit)
{
    auto source32 = NoiseSource(8, 8, 32);
    auto source24 = NoiseSource(8, 8, 24);
    auto frame = MarkedFrame(2, 2);
    ASSERT_TRUE(frame->FilterRot(source32.get(), 2.5f, 2.5f, 2, 2, 0, 0, 0, 0, kBilinear, 0));
    EXPECT_EQ(FramePixel(*frame, 1, 1)[3], Bilinear(*source32, 3.5f, 3.5f, 1, 1, 3));
    ASSERT_TRUE(frame->FilterRot(source24.get(), 2.5f, 2.5f, 2, 2, 0, 0, 0, 0, kBilinear, 0));
    EXPECT_EQ(FramePixel(*frame, 1, 1)[3], 255);
}

TEST(RotQuality, NearestFrom24BitLeavesTheFrameAlphaAndCopiesItFrom32Bit)
{
    auto source24 = PatternSource(8, 8, 24);
    auto source32 = PatternSource(8, 8, 32);
    auto frame = MarkedFrame(4, 4);
    ASSERT_TRUE(frame->FilterRot(source24.get(), 2, 2, 4, 4, 0, 0, 0, 0, kNearest, 0));
    EXPECT_EQ(FramePixel(*frame, 1, 1)[3], kMarker);
    EXPECT_EQ(FramePixel(*frame, 1, 1)[2], pxtest::Pixel(*source24, 3, 3)[2]);
    ASSERT_TRUE(frame->FilterRot(source32.get(), 2, 2, 4, 4, 0, 0, 0, 0, kNearest, 0));
    EXPECT_EQ(FramePixel(*frame, 1, 1)[3], pxtest::Pixel(*source32, 3, 3)[3]);
}

// ---- Field codes ----

TEST(RotFields, FieldCode10RendersEvenRowsAnd11OddRows)
{
    auto source = NoiseSource(20, 20, 24);
    for (int fieldCode : {10, 11}) {
        auto frame = MarkedFrame(6, 7);
        auto whole = MarkedFrame(6, 7);
        ASSERT_TRUE(
            frame->FilterRot(source.get(), 2, 3, 12, 12, 20, 0, 0, 0, kBilinear, fieldCode));
        ASSERT_TRUE(whole->FilterRot(source.get(), 2, 3, 12, 12, 20, 0, 0, 0, kBilinear, 0));
        for (int row = 0; row < 7; ++row) {
            if (row % 2 == fieldCode % 10)
                EXPECT_EQ(pxtest::RowPixels(*frame, row), pxtest::RowPixels(*whole, row));
            else
                EXPECT_TRUE(RowIsMarked(*frame, row)) << row;
        }
    }
}

TEST(RotFields, FieldCode1ShiftsEveryRowByHalfARow)
{
    auto source = NoiseSource(12, 30, 32);
    auto shifted = MarkedFrame(6, 8);
    auto moved = MarkedFrame(6, 8);
    for (int quality : {kNearest, kBilinear}) {
        ASSERT_TRUE(shifted->FilterRot(source.get(), 2, 2, 6, 16, 0, 0, 0, 0, quality, 1));
        ASSERT_TRUE(moved->FilterRot(source.get(), 2, 3, 6, 16, 0, 0, 0, 0, quality, 0));
        EXPECT_EQ(pxtest::AllRows(*shifted), pxtest::AllRows(*moved));
    }
}

// ---- Refusals ----

TEST(RotRefusals, MissingSourceOrOtherDepthsAreRefused)
{
    auto frame = MarkedFrame(4, 4);
    EXPECT_FALSE(frame->FilterRot(nullptr, 0, 0, 4, 4, 10, 0, 0, 0, 100, 0));
    CDIB empty(0, 0, 24);
    EXPECT_FALSE(frame->FilterRot(&empty, 0, 0, 4, 4, 10, 0, 0, 0, 100, 0));
    for (int bits : {8, 16}) {
        auto source = PatternSource(4, 4, bits);
        EXPECT_FALSE(frame->FilterRot(source.get(), 0, 0, 4, 4, 10, 0, 0, 0, 100, 0)) << bits;
    }
    auto source = PatternSource(4, 4, 24);
    CDIB frame24(4, 4, 24);
    EXPECT_FALSE(frame24.FilterRot(source.get(), 0, 0, 4, 4, 10, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterRot(source.get(), 0, 0, -4, 4, 10, 0, 0, 0, 100, 0));
    EXPECT_FALSE(frame->FilterRot(source.get(), 0, 0, 4, 4, 10, 0, 0, 5, 100, 0));
    EXPECT_FALSE(frame->FilterRot(source.get(), 0, 0, 4, 4, 10, 0, 0, 0, 100, -20));
    for (int row = 0; row < 4; ++row)
        EXPECT_TRUE(RowIsMarked(*frame, row));
}
