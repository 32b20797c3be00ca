// The key information panel's texts, zoom marks, plus and minus marks.

#include "ui/main/key_panel.h"

#include <gtest/gtest.h>
#include <cstring>
#include <limits>

#include "doc/cdoc.h"
#include "doc/globals.h"

namespace {

TEST(ZoomMarks, ScaleOfOneEighthLightsNone)
{
    for (int mark = 0; mark < kZoomMarkCount; ++mark)
        EXPECT_FALSE(ZoomMarkLit(0.125f, mark)) << mark;
}

TEST(ZoomMarks, EachMarkHasItsScales)
{
    EXPECT_TRUE(ZoomMarkLit(1.0f, 0));
    EXPECT_TRUE(ZoomMarkLit(4.0f, 0));
    EXPECT_FALSE(ZoomMarkLit(0.99f, 0));
    EXPECT_TRUE(ZoomMarkLit(0.5f, 1));
    EXPECT_TRUE(ZoomMarkLit(0.505f, 1));  // compared on trunc(scale x 100)
    EXPECT_FALSE(ZoomMarkLit(0.51f, 1));
    EXPECT_TRUE(ZoomMarkLit(0.25f, 2));
    EXPECT_TRUE(ZoomMarkLit(0.1f, 3));
    EXPECT_TRUE(ZoomMarkLit(0.05f, 3));
    EXPECT_FALSE(ZoomMarkLit(0.11f, 3));
    EXPECT_FALSE(ZoomMarkLit(0.5f, 4));
}

TEST(ZoomMarks, StandTenPixelsApartFromTheBottomLeft)
{
    tagRECT client = {0, 0, 640, 480};
    tagRECT first = ZoomMarkRect(client, 0);
    EXPECT_EQ(first.left, 10);
    EXPECT_EQ(first.top, 480 - 82);
    EXPECT_EQ(first.right, 19);
    EXPECT_EQ(first.bottom, 480 - 73);
    EXPECT_EQ(ZoomMarkRect(client, 3).top, 480 - 52);
}

KeyStruct Key(float x, float y, float width, float r1, float r2, float r3)
{
    KeyStruct key{};
    key.XPos = x;
    key.YPos = y;
    key.Width = width;
    key.Rotation = r1;
    key.Rot2 = r2;
    key.Rot3 = r3;
    return key;
}

TEST(KeyLines, ValuesAreTruncatedNotRounded)
{
    KeyStruct key = Key(99.9f, -3.7f, 640.99f, 12.5f, -0.5f, 7.0f);
    EXPECT_EQ(KeyPositionLine(key), "Pos   99,-3");
    EXPECT_EQ(KeyWidthLine(key), "Wid  640");
    EXPECT_EQ(KeyRotationLine(key), "Rot   12,0,7");
}

TEST(KeyLines, ValuesBeyondRangeOrNotNumbersDoNotMisbehave)
{
    KeyStruct key = Key(1e30f, -1e30f, std::numeric_limits<float>::quiet_NaN(), 0, 0, 0);
    EXPECT_EQ(KeyPositionLine(key), "Pos   2147483647,-2147483648");
    EXPECT_EQ(KeyWidthLine(key), "Wid  0");
}

TEST(SummaryLine, PlainShowGivesRateAndPicture)
{
    PanelSummary summary;
    summary.pictureName = "lake";
    EXPECT_EQ(SummaryLine(summary), "29.97 fps / lake");
    summary.pictureName.clear();
    summary.frameRate = 2500;
    EXPECT_EQ(SummaryLine(summary), "25.00 fps");
}

TEST(SummaryLine, FlagsInTheirOrder)
{
    PanelSummary summary;
    summary.draft = true;
    summary.fieldSwap = true;
    summary.motionBlur = true;
    summary.preBlur = true;
    summary.contrast = 60;
    summary.videoSafe = true;
    summary.pictureBits = 32;
    summary.pictureName = "city";
    EXPECT_EQ(SummaryLine(summary),
              "29.97 fps / Draft Mode / Field order swapped / Motion Blur"
              " / Pre-Blur / Con / VS / Alpha / city");
}

TEST(SummaryLine, ContrastWithinOneOfNeutralIsNoChange)
{
    PanelSummary summary;
    summary.contrast = 50;
    summary.brightness = 51;
    EXPECT_EQ(SummaryLine(summary).find(" / Con"), std::string::npos);
    summary.contrast = 49;
    summary.brightness = 49;
    EXPECT_EQ(SummaryLine(summary).find(" / Con"), std::string::npos);
    summary.contrast = 48;
    summary.brightness = 50;
    EXPECT_NE(SummaryLine(summary).find(" / Con"), std::string::npos);
    summary.contrast = 50;
    summary.brightness = 52;
    EXPECT_NE(SummaryLine(summary).find(" / Con"), std::string::npos);
}

TEST(SummaryLine, ReducedVariantHasNoRateAndNoSeparatorBeforeTheName)
{
    PanelSummary summary;
    summary.slatewhirl = true;
    summary.pictureName = "beach";
    EXPECT_EQ(SummaryLine(summary), "beach");
    summary.videoSafe = true;
    EXPECT_EQ(SummaryLine(summary), " / VSbeach");
}

TEST(SummaryLine, TwentyFourBitPictureHasNoAlpha)
{
    PanelSummary summary;
    summary.pictureBits = 24;
    EXPECT_EQ(SummaryLine(summary), "29.97 fps");
}

TEST(SummaryOfDocument, ReadsTheDocumentAndThePictureOnScreen)
{
    gCurFrame = 0;
    CDoc doc;
    doc.showWord = static_cast<uint16_t>(48 | (50 << 8));
    doc.videoColors = false;
    doc.draftRender = true;
    std::strcpy(doc.picSpec[0].name, "/pictures/summer/Beach Day.png");
    doc.picCount = 1;
    PanelSummary summary = SummaryOf(doc);
    EXPECT_EQ(summary.contrast, 48);
    EXPECT_EQ(summary.brightness, 50);
    EXPECT_TRUE(summary.draft);
    EXPECT_EQ(summary.pictureName, "Beach Day");
}

TEST(PanelMarks, PlusAndMinusAreHitAroundTheirTriangles)
{
    tagRECT client = {0, 0, 640, 480};
    int t = 480 - kPanelTopFromBottom;
    EXPECT_EQ(PanelStepAt(client, 106, t + 65), PanelStep::kNext);
    EXPECT_EQ(PanelStepAt(client, 103, t + 60), PanelStep::kNext);
    EXPECT_EQ(PanelStepAt(client, 96, t + 65), PanelStep::kPrevious);
    EXPECT_EQ(PanelStepAt(client, 96, t + 75), PanelStep::kNone);
    EXPECT_EQ(PanelStepAt(client, 50, t + 65), PanelStep::kNone);
    EXPECT_EQ(PanelStepAt(client, 120, t + 65), PanelStep::kNone);
}

class NeighbourKeys : public testing::Test {
protected:
    void SetUp() override
    {
        // Picture 0 from frame 0 with keys at 0, 30 and 90; picture 1 from frame 200.
        doc.picCount = 2;
        doc.keyCount[0] = 3;
        doc.keys[0][1].Frame = 30;
        doc.keys[0][2].Frame = 90;
        doc.keys[1][0].PicStart = 200;
        doc.keyCount[1] = 2;
        doc.keys[1][1].Frame = 50;
    }
    CDoc doc;
};

TEST_F(NeighbourKeys, NextAndPreviousKeyOfThePictureOnScreen)
{
    EXPECT_EQ(NeighbourKeyFrame(doc, 10, PanelStep::kNext), 30);
    EXPECT_EQ(NeighbourKeyFrame(doc, 30, PanelStep::kNext), 90);
    EXPECT_EQ(NeighbourKeyFrame(doc, 30, PanelStep::kPrevious), 0);
    EXPECT_EQ(NeighbourKeyFrame(doc, 60, PanelStep::kPrevious), 30);
    EXPECT_EQ(NeighbourKeyFrame(doc, 210, PanelStep::kNext), 250);
    EXPECT_EQ(NeighbourKeyFrame(doc, 210, PanelStep::kPrevious), 200);
}

TEST_F(NeighbourKeys, NoneBeyondTheEndsOfThePicture)
{
    EXPECT_EQ(NeighbourKeyFrame(doc, 0, PanelStep::kPrevious), -1);
    EXPECT_EQ(NeighbourKeyFrame(doc, 95, PanelStep::kNext), -1);
    EXPECT_EQ(NeighbourKeyFrame(doc, 10, PanelStep::kNone), -1);
}

}  // namespace
