// Cross-dissolving one frame into another with the cosine ease.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "adjust_pixels.h"
#include "cdib_pixels.h"

using pxtest::AllRows;
using pxtest::FillPattern;
using pxtest::Pixel;
using pxtest::SetPixel;

namespace {

using Bytes = std::vector<unsigned char>;

// This frame's depth and the other frame's.
template <int Ours, int Theirs>
struct DepthPair {
    static constexpr int kOurs = Ours;
    static constexpr int kTheirs = Theirs;
};
using DepthPairs =
    ::testing::Types<DepthPair<24, 24>, DepthPair<24, 32>, DepthPair<32, 24>, DepthPair<32, 32>>;
struct DepthPairNames {
    template <typename T>
    static std::string GetName(int)
    {
        return "Bits" + std::to_string(T::kOurs) + "From" + std::to_string(T::kTheirs);
    }
};

Bytes Colour(int bits, unsigned char blue, unsigned char green, unsigned char red,
             unsigned char alpha)
{
    if (bits == 32)
        return {blue, green, red, alpha};
    return {blue, green, red};
}

void FillColour(CDIB& image, unsigned char blue, unsigned char green, unsigned char red,
                unsigned char alpha)
{
    for (int row = 0; row < image.GetHgt(); ++row)
        for (long x = 0; x < image.GetWid(); ++x)
            SetPixel(image, x, row, Colour(image.GetBitCount(), blue, green, red, alpha));
}

// The blue, green and red of a pixel.
Bytes ColourOf(const CDIB& image, long x, int row)
{
    Bytes pixel = Pixel(image, x, row);
    return Bytes(pixel.begin(), pixel.begin() + 3);
}

template <typename T>
class DissolveBetweenDepths : public ::testing::Test {
};
TYPED_TEST_SUITE(DissolveBetweenDepths, DepthPairs, DepthPairNames);

TYPED_TEST(DissolveBetweenDepths, TZeroGivesTheOtherImage)
{
    CDIB image(5, 3, TypeParam::kOurs);
    FillPattern(image);
    CDIB other(5, 3, TypeParam::kTheirs);
    FillColour(other, 1, 2, 3, 4);
    SetPixel(other, 4, 2, Colour(TypeParam::kTheirs, 250, 251, 252, 253));
    CDIB original(5, 3, TypeParam::kOurs);
    ASSERT_TRUE(image.Copy(&original, false));
    pxtest::MarkOutsideBytes(image, 0x99);

    image.Dissolve(&other, 0.0f);
    for (int row = 0; row < 3; ++row)
        for (long x = 0; x < 5; ++x) {
            EXPECT_EQ(ColourOf(image, x, row), ColourOf(other, x, row));
            if (TypeParam::kOurs == 32) {
                unsigned char alpha =
                    TypeParam::kTheirs == 32 ? Pixel(other, x, row)[3] : Pixel(original, x, row)[3];
                EXPECT_EQ(Pixel(image, x, row)[3], alpha);
            }
        }
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x99));
}

TYPED_TEST(DissolveBetweenDepths, TOneGivesThisImage)
{
    CDIB image(5, 3, TypeParam::kOurs);
    FillPattern(image);
    CDIB other(5, 3, TypeParam::kTheirs);
    FillColour(other, 255, 0, 255, 255);
    Bytes before = AllRows(image);
    // cos(3.1414) = −0.99999998 rounds to −1 in single precision, so the weight is exactly 1.
    image.Dissolve(&other, 1.0f);
    EXPECT_EQ(AllRows(image), before);
}

TYPED_TEST(DissolveBetweenDepths, HalfWayMixesBothImagesHalfAndHalf)
{
    CDIB image(3, 2, TypeParam::kOurs);
    FillColour(image, 100, 0, 255, 100);
    CDIB other(3, 2, TypeParam::kTheirs);
    FillColour(other, 200, 0, 255, 200);
    image.Dissolve(&other, 0.5f);
    // cos(3.1414 × 0.5) = sin(0.0000963) = 0.0000963, so this image weighs
    // w = 1 − 1.0000963 × 0.5 = 0.4999518 and the other 0.5000482:
    // 100 × 0.4999518 + 200 × 0.5000482 = 150.0048 → 150. Equal bytes stay as they are.
    // Alpha is mixed only when both images carry it.
    unsigned char alpha = TypeParam::kTheirs == 32 ? 150 : 100;
    for (int row = 0; row < 2; ++row)
        for (long x = 0; x < 3; ++x)
            EXPECT_EQ(Pixel(image, x, row), Colour(TypeParam::kOurs, 150, 0, 255, alpha));
}

TYPED_TEST(DissolveBetweenDepths, LastPixelOfEveryRowMixesWithTheOthersLastPixel)
{
    CDIB image(7, 3, TypeParam::kOurs);
    FillColour(image, 0, 0, 0, 0);
    CDIB other(7, 3, TypeParam::kTheirs);
    FillColour(other, 10, 10, 10, 10);
    for (int row = 0; row < 3; ++row)
        SetPixel(other, 6, row, Colour(TypeParam::kTheirs, 40, 80, 120, 160));
    pxtest::MarkOutsideBytes(image, 0x99);
    image.Dissolve(&other, 0.0f);
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(ColourOf(image, 5, row), (Bytes{10, 10, 10}));
        EXPECT_EQ(ColourOf(image, 6, row), (Bytes{40, 80, 120}));
    }
    EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x99));
}

TEST(Dissolve, HalfWayWeighsThisImageSlightlyLessThanHalf)
{
    // With w = 0.4999518 (3.1414, not π, in the ease): 200 × w + 100 × (1 − w) = 149.995 → 149,
    // 2 × w = 0.99990 → 0 and 200 × w = 99.990 → 99, where an exact half would give 150, 1, 100.
    CDIB image(3, 1, 24);
    SetPixel(image, 0, 0, {200, 2, 200});
    SetPixel(image, 1, 0, {100, 0, 0});
    SetPixel(image, 2, 0, {0, 0, 0});
    CDIB other(3, 1, 24);
    SetPixel(other, 0, 0, {100, 0, 0});
    SetPixel(other, 1, 0, {200, 2, 200});
    SetPixel(other, 2, 0, {0, 0, 0});
    image.Dissolve(&other, 0.5f);
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{149, 0, 99}));
    // The other way round the other image's larger weight rounds up: 150.0048 → 150,
    // 2 × 0.5000482 = 1.0001 → 1, 200 × 0.5000482 = 100.0096 → 100.
    EXPECT_EQ(Pixel(image, 1, 0), (Bytes{150, 1, 100}));
    EXPECT_EQ(Pixel(image, 2, 0), (Bytes{0, 0, 0}));
}

TEST(Dissolve, EveryByteOfLongRowsIsMixed)
{
    // Rows of 21, 28, 3 × 17 and 4 × 17 bytes: whole runs of 16 and the bytes after them.
    for (auto [ours, theirs, width] : {std::tuple{24, 24, 7}, std::tuple{32, 32, 7},
                                       std::tuple{24, 32, 17}, std::tuple{32, 24, 17}}) {
        CDIB image(width, 2, ours);
        FillColour(image, 200, 100, 2, 200);
        CDIB other(width, 2, theirs);
        FillColour(other, 100, 200, 0, 100);
        pxtest::MarkOutsideBytes(image, 0x99);
        image.Dissolve(&other, 0.5f);
        // 149.995 → 149, 150.0048 → 150, 0.9999 → 0 (see HalfWayWeighsThisImageSlightlyLess…);
        // alpha mixes like blue when both carry it, else keeps 200.
        unsigned char alpha = ours == 32 && theirs == 32 ? 149 : 200;
        for (int row = 0; row < 2; ++row)
            for (long x = 0; x < width; ++x)
                ASSERT_EQ(Pixel(image, x, row), Colour(ours, 149, 150, 0, alpha))
                    << ours << " from " << theirs << ", pixel " << x << " of row " << row;
        EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x99));
    }
}

TEST(Dissolve, ThreeQuartersUsesTheSameConstant)
{
    // cos(3.1414 × 0.75) = cos(3π/4 − 0.0001445) = −0.7070046, w = 1 − 0.2929977 = 0.8535023:
    // 2 × w + 200 × 0.1464977 = 1.7070 + 29.2995 = 31.0065 → 31 (with π: 30.9964 → 30).
    CDIB image(1, 1, 32);
    SetPixel(image, 0, 0, {2, 200, 0, 2});
    CDIB other(1, 1, 32);
    SetPixel(other, 0, 0, {200, 2, 0, 200});
    image.Dissolve(&other, 0.75f);
    // 200 × w + 2 × 0.1464977 = 170.7005 + 0.2930 = 170.9935 → 170.
    EXPECT_EQ(Pixel(image, 0, 0), (Bytes{31, 170, 0, 31}));
}

TEST(Dissolve, EqualImagesStayEqualAlongTheEase)
{
    CDIB image(256, 1, 32);
    for (long c = 0; c < 256; ++c) {
        auto value = static_cast<unsigned char>(c);
        SetPixel(image, c, 0, {value, value, value, value});
    }
    for (float t : {0.1f, 0.25f, 0.5f, 0.75f, 0.9f}) {
        CDIB mixed(256, 1, 32);
        ASSERT_TRUE(image.Copy(&mixed, false));
        mixed.Dissolve(&image, t);
        EXPECT_EQ(AllRows(mixed), AllRows(image)) << "t " << t;
    }
}

TEST(Dissolve, OtherImageOfAnotherSizeLeavesThisImageAlone)
{
    CDIB image(4, 3, 24);
    FillPattern(image);
    Bytes before = AllRows(image);
    CDIB wider(5, 3, 24);
    CDIB higher(4, 4, 32);
    CDIB narrower(3, 3, 32);
    CDIB lower(4, 2, 24);
    for (CDIB* other : {&wider, &higher, &narrower, &lower}) {
        image.Dissolve(other, 0.0f);
        EXPECT_EQ(AllRows(image), before) << other->GetWid() << " × " << other->GetHgt();
    }
}

TEST(Dissolve, MissingOrEmptyOtherImageLeavesThisImageAlone)
{
    CDIB image(4, 3, 32);
    FillPattern(image);
    Bytes before = AllRows(image);
    image.Dissolve(nullptr, 0.0f);
    EXPECT_EQ(AllRows(image), before);
    CDIB empty(0, 3, 32);
    ASSERT_EQ(empty.header, nullptr);
    image.Dissolve(&empty, 0.0f);
    EXPECT_EQ(AllRows(image), before);
}

TEST(Dissolve, EmptyImageStaysEmpty)
{
    CDIB image(0, 0, 24);
    CDIB other(1, 1, 24);
    image.Dissolve(&other, 0.5f);
    EXPECT_EQ(image.bits, nullptr);
}

TEST(Dissolve, PaletteDepthsOnEitherSideChangeNothing)
{
    for (int ours : {8, 16, 24, 32})
        for (int theirs : {8, 16, 24, 32}) {
            if ((ours == 24 || ours == 32) && (theirs == 24 || theirs == 32))
                continue;
            // Width 3 leaves padding after the pixels of every depth but 32.
            CDIB image(3, 2, ours);
            FillPattern(image);
            pxtest::MarkOutsideBytes(image, 0x99);
            Bytes before = AllRows(image);
            CDIB other(3, 2, theirs);
            FillPattern(other);
            image.Dissolve(&other, 0.0f);
            EXPECT_EQ(AllRows(image), before) << ours << " from " << theirs;
            EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x99)) << ours << " from " << theirs;
        }
}

TEST(Dissolve, TThatIsNotANumberChangesNothing)
{
    CDIB image(3, 2, 24);
    FillPattern(image);
    Bytes before = AllRows(image);
    CDIB other(3, 2, 24);
    for (float t : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                    -std::numeric_limits<float>::infinity()}) {
        image.Dissolve(&other, t);
        EXPECT_EQ(AllRows(image), before) << t;
    }
}

TEST(Dissolve, WidestRowsOfDifferentPixelSizesStayInsideTheirPixels)
{
    for (auto [ours, theirs] : {std::pair{24, 32}, std::pair{32, 24}}) {
        for (int width : {8191, 8192}) {
            CDIB image(width, 2, ours);
            FillPattern(image);
            pxtest::MarkOutsideBytes(image, 0x99);
            CDIB other(width, 2, theirs);
            FillColour(other, 9, 8, 7, 6);
            pxtest::MarkOutsideBytes(other, 0x98);
            image.Dissolve(&other, 0.0f);
            EXPECT_EQ(ColourOf(image, width - 1, 1), (Bytes{9, 8, 7}));
            EXPECT_TRUE(pxtest::OutsideBytesAre(image, 0x99)) << ours << " from " << theirs;
            EXPECT_TRUE(pxtest::OutsideBytesAre(other, 0x98)) << ours << " from " << theirs;
        }
    }
}

}  // namespace
